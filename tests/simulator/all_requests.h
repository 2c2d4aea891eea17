// Requests of every command to a handset, for tests of what reads them.
#pragma once

#include "simulator/host_side.h"

#include <span>
#include <string>
#include <vector>

namespace host {

constexpr const char* kNewCode = "Xw9J";

// Each is asked as it is added: what is written is what was read before, of contact 3, event 0 and the first message.
class Requests
{
public:
    Requests(const simulator::Phone& phone, const std::string& dialled) : handset_(phone)
    {
        for (const std::uint32_t command : {1, 3, 4, 5, 6, 12, 34, 46, 49})
            Add(command, {});
        Add(8, Bytes{1});
        AddText(9, "\1" + std::string("1234")); // the wrong code
        AddText(9, "\1" + phone.setup.lockCode);
        AddText(10, phone.setup.lockCode + kNewCode);
        Add(13, Bytes{0x7E, 0x7D, 0x2C, 1});
        simulator::FieldWriter activation = Record(45);
        activation.U32("automatic", 1);
        activation.Text("dial", dialled, 104);
        Add(activation.Written());
        ReadStores();
        WriteStores();
        Add(2, {});
    }

    const std::vector<Bytes>& All() const { return all_; }

private:
    // What stands behind the result of its reply.
    Bytes Add(const Bytes& record)
    {
        all_.push_back(record);
        return asker_.Ask(record).rest;
    }
    Bytes Add(std::uint32_t command, std::initializer_list<std::uint32_t> values)
    {
        return Add(Record(command, values));
    }
    Bytes Add(std::uint32_t command, std::span<const std::uint8_t> parameters)
    {
        simulator::FieldWriter record = Record(command);
        record.Append(parameters);
        return Add(record.Written());
    }
    void AddText(std::uint32_t command, const std::string& text) { Add(command, Bytes(text.begin(), text.end())); }

    // A list whose records begin with what the next request names.
    void ReadList(std::uint32_t first, std::uint32_t next, std::uint32_t list)
    {
        Bytes record = Add(first, {list});
        while (record.size() > 4 && NumberAt(record, 0) == 1)
            record = Add(next, {list, NumberAt(record, 4)});
    }

    void ReadStores()
    {
        for (std::uint32_t id = 0; id < 60; ++id) {
            Add(35, {id});
            Add(30, {id});
        }
        for (std::uint32_t list = 0; list <= 5; ++list) {
            Add(15, {list});
            ReadList(17, 18, list);
            Add(25, {list});
            ReadList(26, 27, list);
        }
        Add(39, {1, 0});
        Add(40, {1});
        Add(41, {1});
    }

    void WriteStores()
    {
        const Bytes contact = Add(35, {3}), event = Add(30, {0}), message = Add(17, {0});
        Add(36, std::span(contact).subspan(8));
        simulator::FieldWriter written;
        written.U32("index", 90);
        written.Append(std::span(event).subspan(4));
        Add(31, written.Written());
        for (const std::uint32_t command : {16, 19})
            Add(command, std::span(message).subspan(4));
        Add(22, {0, 1});
        for (const std::uint32_t command : {20, 21, 28, 32, 37})
            Add(command, {1});
        for (const std::uint32_t command : {33, 38})
            Add(command, {});
    }

    simulator::Handset handset_;
    Asker asker_{handset_};
    std::vector<Bytes> all_;
};

} // namespace host

// A simulated handset and files of cards. Base of the tests of contacts.
#pragma once

#include "phnctl/handset_run.h"

#include <fstream>
#include <map>
#include <string>

namespace phnctl_test {

class Contacts : public HandsetRun
{
protected:
    std::string File(const std::string& name, const std::string& text)
    {
        const auto path = (m_folder.Path() / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    std::string Path(const std::string& name) const { return (m_folder.Path() / name).string(); }
    std::map<std::uint32_t, simulator::Contact> Stored() { return Handset().Snapshot().contacts; }
    void Empty()
    {
        Handset().Change(0, [](simulator::Phone& phone) { phone.contacts.clear(); });
    }

    simulator::DeviceDirectory m_folder;
};

inline std::string Card(const std::string& name, const std::string& number)
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:" + name + "\r\nTEL;TYPE=CELL:" + number + "\r\nEND:VCARD\r\n";
}

inline bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

} // namespace phnctl_test

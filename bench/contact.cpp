// A contact of seven entries as vCard text, either way, beside a vCard reader that parses the same card; and a text of
// one MiB without a line end, which is where a careless reader looks for the end again and again.
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <libical/vcc.h>

#include "log/log_file.h"
#include "phnctl/contacts/card_reader.h"
#include "phonebook/speed_dial_phonebook.h"
#include "ratio.h"

namespace {

constexpr size_t kLongText = 1 << 20;

const std::string kCard = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Maximiliana Lefevre\r\nTEL;TYPE=CELL:+15551000001\r\n"
                          "X-PHN-MOBILE-2:+15551000002\r\nTEL;TYPE=HOME:+15551000003\r\nTEL;TYPE=WORK:+15551000004\r\n"
                          "TEL;TYPE=FAX:+15551000005\r\nEMAIL:maximiliana.lefevre@example.org\r\n"
                          "X-PHN-EMAIL-2:m.lefevre@example.com\r\nREV:N/A\r\nUID:N/A\r\nX-PHN-GROUP-ID:3\r\n"
                          "X-PHN-PICTURE-ID:2\r\nX-PHN-RINGER-ID:4\r\nX-PHN-DEFAULT-NO:1\r\n"
                          "X-PHN-SPEEDDIAL-LIST:1,2,3,4,5\r\nEND:VCARD\r\n";

PHN_CONTACT_RECORD Host(std::string& text)
{
    return {sizeof(PHN_CONTACT_RECORD), text.data(), static_cast<uint32_t>(text.size())};
}

void FromText(benchmark::State& state)
{
    CSpeedDialPhonebook phonebook;
    std::string text = kCard;
    PHN_CONTACT_RECORD host = Host(text);
    for (auto _ : state) {
        PB_CONTACT record{};
        if (!phonebook.VCardToNorvik(&record, &host) || record.rcRecord.dwNumOfEntries != 7)
            return state.SkipWithError("the card is rejected");
        benchmark::DoNotOptimize(record);
        phonebook.FreeEntries(&record, 1);
    }
}

void ToText(benchmark::State& state)
{
    CSpeedDialPhonebook phonebook;
    std::string text = kCard;
    PHN_CONTACT_RECORD host = Host(text);
    PB_CONTACT record{};
    phonebook.VCardToNorvik(&record, &host);
    std::string buffer(4096, '\0');
    host = Host(buffer);
    for (auto _ : state) {
        if (!phonebook.NorvikToVCard(&host, &record))
            return state.SkipWithError("the text does not fit");
        benchmark::ClobberMemory();
    }
    phonebook.FreeEntries(&record, 1);
}

void Reference(benchmark::State& state)
{
    for (auto _ : state) {
        VObject* const card = Parse_MIME(kCard.data(), kCard.size());
        if (!card)
            return state.SkipWithError("the reference rejects the card");
        cleanVObject(card);
    }
}

void FromLongText(benchmark::State& state)
{
    CSpeedDialPhonebook phonebook;
    std::string text = kCard + std::string(kLongText, 'X');
    PHN_CONTACT_RECORD host = Host(text);
    for (auto _ : state) {
        PB_CONTACT record{};
        benchmark::DoNotOptimize(phonebook.VCardToNorvik(&record, &host));
        phonebook.FreeEntries(&record, 1);
    }
}

void FromLongFile(benchmark::State& state)
{
    const std::string text = kCard + std::string(kLongText, 'X');
    for (auto _ : state)
        benchmark::DoNotOptimize(phnctl::ContactsOfFile("file", text));
}

} // namespace

int main(int argc, char** argv)
{
    CreateLogLock();
    benchmark::RegisterBenchmark("contact_from_text", FromText)->Repetitions(5);
    benchmark::RegisterBenchmark("contact_to_text", ToText)->Repetitions(5);
    benchmark::RegisterBenchmark("contact_reference", Reference)->Repetitions(5);
    benchmark::RegisterBenchmark("contact_from_long_text", FromLongText)->Repetitions(5);
    benchmark::RegisterBenchmark("contact_from_long_file", FromLongFile)->Repetitions(5);

    using bench::Bound;
    constexpr double kThird = 1.0 / 3;
    return bench::RunBenchmarks(
        argc, argv,
        {
            {"text to contact beside a vCard reader", "contact_from_text", "contact_reference", Bound::AtMost, kThird},
            {"contact to text beside a vCard reader", "contact_to_text", "contact_reference", Bound::AtMost, kThird},
            {"1 MiB without a line end, library", "contact_from_long_text", "", Bound::AtMost, 50000},
            {"1 MiB without a line end, phnctl", "contact_from_long_file", "", Bound::AtMost, 50000},
        });
}

// What a simulated handset remembers: identity, live status, parameters and the four stores.
// Plain data, used by the command table, the state file and whoever drives the simulator.
// A value whose meaning only the handset knows is named after its place in its record (network22 lies at offset 22);
// docs/protocol.md says what this handset means by it.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace simulator {

struct DateTime
{
    std::uint16_t year = 0;
    std::uint8_t month = 0;
    std::uint8_t day = 0;
    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint16_t second = 0;

    bool operator==(const DateTime&) const = default;
};

struct Identity
{
    std::string number; // digits only, at most 14
    std::uint32_t esn = 0;
    std::uint8_t info19 = 0;
    std::string info20;
    std::string model;
    std::string info148;
    std::uint32_t info212 = 0;
    std::string info216;
    std::uint32_t info238 = 0;
    std::uint32_t info242 = 0;
    std::uint32_t info246 = 0;
    std::uint8_t info250 = 0;
    std::uint8_t info251 = 0;
    std::string info253;
};

struct Battery
{
    std::uint8_t battery1 = 0;
    std::uint8_t battery2 = 0;
};

struct Network
{
    std::uint32_t network0 = 0;
    std::uint8_t network4 = 0;
    std::uint8_t network5 = 0;
    std::uint16_t network6 = 0;
    std::uint16_t network8 = 0;
    std::uint16_t network10 = 0;
    std::uint16_t network12 = 0;
    std::uint16_t network14 = 0;
    std::uint16_t network16 = 0;
    std::uint16_t network18 = 0;
    std::uint16_t network20 = 0;
    std::int32_t network22 = 0;
    std::string network26; // sent as Latin-1
    std::int32_t network60 = 0;
    std::uint32_t network64 = 0;
};

struct Connection
{
    std::uint32_t connection0 = 0;
    std::uint32_t connection4 = 0;
    std::uint32_t connection8 = 0;
    std::uint32_t connection12 = 0;
    std::uint8_t connection16 = 0;
    std::uint8_t endReason = 0;
    std::uint8_t connection18 = 0;
};

struct Setup
{
    std::uint8_t radio = 1;
    std::uint8_t lock = 0;
    std::string lockCode = "0000"; // four characters
    std::uint8_t parameter1 = 0;
    std::uint8_t parameter2 = 0;
    std::uint16_t parameter3 = 0;
    std::string activationDialled; // the number of the last activation, empty for none
};

// The bits of the phone-variance flags. Each stays set until command 49 has reported it.
enum Variance : std::uint16_t
{
    kNetworkChanged = 0x0001,
    kConnectionChanged = 0x0010,
    kStateChanged = 0x0020,
    kBatteryChanged = 0x0040,
    kMessagesChanged = 0x0080,
    kActivationChanged = 0x0100,
};

struct ContactEntry
{
    std::uint32_t isDefault = 0;
    std::uint32_t type = 0;
    std::string value;
    std::uint32_t speedDial = 0;
};

struct Contact
{
    std::uint32_t group = 0;
    std::uint32_t picture = 0;
    std::uint32_t ringer = 0;
    std::string text;
    std::string firstName;
    std::string lastName;
    std::vector<ContactEntry> entries;
};

struct Event
{
    DateTime start;
    DateTime end;
    DateTime created;
    DateTime modified;
    DateTime alarmTime;
    DateTime until;
    std::uint32_t zone = 0;
    std::uint32_t repeatType = 0;
    std::uint32_t ringer = 255;
    std::uint32_t repeatCount = 0;
    std::uint16_t alarm = 0;
    std::string description;
    std::string uid;
    std::uint32_t interval = 0;
    std::array<std::uint8_t, 8> byDay{};
    std::array<std::uint8_t, 8> byDayFromEnd{};
    std::uint32_t byMonth = 0;
    std::uint32_t byMonthFromEnd = 0;
    std::uint32_t byMonthDay = 0;
    std::uint32_t byMonthDayFromEnd = 0;
};

struct Message
{
    std::uint32_t box = 0;
    std::uint32_t status = 0;
    std::uint32_t replyOption = 0;
    DateTime time{}; // UTC
    std::string address{};
    std::string callback{};
    std::uint32_t priority = 0;
    bool hasBody = true; // an empty body still travels as its terminator; no body travels as nothing
    std::string body{};
};

struct Call
{
    std::uint32_t list = 1;
    std::uint32_t entry4 = 0;
    std::uint32_t duration = 0; // seconds
    DateTime time;
    std::string text;
};

// What the handset has room for. A write beyond a limit is refused.
struct Limits
{
    std::uint32_t contacts = 200;
    std::uint32_t events = 100;
    std::uint32_t messages = 200;
    std::uint32_t nameLength = 36;
    std::uint32_t numberLength = 32;
    std::uint32_t emailLength = 52;
    std::uint32_t bodyLength = 160;
    // A new contact is never stored under an id that ends in this digit (10: every id will do).
    std::uint32_t skippedDigit = 7;
};

struct Phone
{
    Identity identity;
    Battery battery;
    Network network;
    Connection connection;
    Setup setup;
    std::uint16_t variance = 0;
    Limits limits;
    std::map<std::uint32_t, std::string> groups;
    std::map<std::uint32_t, std::string> pictures;
    std::map<std::uint32_t, std::string> ringers;
    std::map<std::uint32_t, Contact> contacts; // by record id
    std::map<std::uint32_t, Event> events;     // by index
    std::map<std::uint32_t, Message> messages; // by index
    std::map<std::uint32_t, Call> calls;       // by entry id
};

// The handset that a simulator starts with: identity, contacts, events, messages and calls as shipped.
const Phone& DefaultPhone();

} // namespace simulator

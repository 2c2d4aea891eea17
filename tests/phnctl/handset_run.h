// A simulated handset that outlives the runs of phnctl, and a folder for files: for tests that look at both sides.
#pragma once

#include "phnctl/program.h"
#include "simulator/lines/simulator.h"

#include <gtest/gtest.h>

struct RunRow
{
    std::string words;
    int status;
    const char* says;
};

// A vCard. Values in short: C is a mobile, H a home, W a work number, M the second mobile, E an address.
inline std::string Card(const std::string& name, const std::vector<std::string>& values)
{
    const std::map<char, const char*> properties{{'C', "TEL;TYPE=CELL:"},
                                                 {'H', "TEL;TYPE=HOME:"},
                                                 {'W', "TEL;TYPE=WORK:"},
                                                 {'M', "X-PHN-MOBILE-2:"},
                                                 {'E', "EMAIL:"}};
    std::string text = "BEGIN:VCARD\nVERSION:3.0\nFN:" + name + "\n";
    for (const std::string& value : values)
        text += properties.at(value.front()) + value.substr(1) + "\n";
    return text + "END:VCARD\n";
}

class HandsetRun : public testing::Test
{
protected:
    HandsetRun() : m_simulator(m_devices.Path(), simulator::UsbInterfaceName("0001"))
    {
        // Little room, as many runs ask for all indexes.
        Handset().Change(0, [](simulator::Phone& phone) { phone.limits.contacts = phone.limits.events = 64; });
        m_simulator.Start();
        m_program.Set("PHNNRV_DEVICES", m_devices.Path().string());
    }

    simulator::Handset& Handset() { return m_simulator.Control(); }
    simulator::Phone Held() { return Handset().Snapshot(); }
    std::string Entries() { return Handset().Show("contacts") + Handset().Show("events"); }
    Outcome Run(const std::string& words, const std::string& input = "") { return m_program.Run(words, input); }

    Outcome Expect(int status, const std::string& words, const std::vector<std::string>& says = {})
    {
        SCOPED_TRACE(words);
        const Outcome outcome = Run(words);
        ::Expect(outcome, status, says);
        return outcome;
    }

    std::string Path(const std::string& name) const { return (m_folder.Path() / name).string(); }
    std::string File(const std::string& name, const std::string& text)
    {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }

    simulator::DeviceDirectory m_devices;
    simulator::DeviceDirectory m_folder;
    simulator::Simulator m_simulator;
    Program m_program;
};

// The panel's server: whom it refuses, and what it tells to those who read well, badly and not at all.
#include "simulator/lines/device_directory.h"
#include "simulator/web/feed.h"
#include "simulator/web/panel.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <string>
#include <tuple>
#include <vector>

namespace {

using simulator::Feed;

struct Served
{
    simulator::DeviceDirectory devices;
    simulator::Simulator handset{devices.Path(), "com5"};
    simulator::Wakeup wakeup;
    simulator::History history{wakeup};
    simulator::Control control{.simulator = handset,
                               .history = history,
                               .wakeup = wakeup,
                               .dataFile = {},
                               .print = [](std::string_view) {},
                               .trace = {}};
    simulator::Panel panel{control, 0};
    const std::string address = panel.Address();
    const std::string authority = address.substr(7, address.find("/?") - 7);
    const std::string query = address.substr(address.find('?'));
    const int port = std::stoi(authority.substr(authority.find(':') + 1));
};

TEST(Panel, RefusesWhoIsNotItsPage)
{
    Served served;
    httplib::Client client("127.0.0.1", served.port);
    std::string guessed = served.query;
    guessed.back() = guessed.back() == '0' ? '1' : '0';
    const std::string own = served.authority, port = std::to_string(served.port);
    const std::tuple<std::string, std::string, std::string, int> cases[] = {
        {"/" + served.query, own, "", 200},
        {"/events", own, "", 403},
        {"/" + guessed, own, "", 403},
        {"/?token=", own, "", 403},
        {"/wire.js", own, "", 403},
        {"/nothing", own, "", 403},
        {"/nothing" + served.query, own, "", 404},
        {"/" + served.query, "handset.example:" + port, "", 403},
        {"/" + served.query, "localhost:" + port, "", 403},
        {"/" + served.query, own, "http://" + own, 200},
        {"/" + served.query, own, "http://127.0.0.1", 403},
        {"/" + served.query, own, "null", 403},
    };
    for (const auto& [path, host, origin, status] : cases) {
        SCOPED_TRACE(path + " " + host + " " + origin);
        httplib::Headers headers{{"Host", host}};
        if (!origin.empty())
            headers.emplace("Origin", origin);
        const auto answer = client.Get(path, headers);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, status);
        EXPECT_FALSE(answer->has_header("Access-Control-Allow-Origin"));
    }
    EXPECT_EQ(client.Post("/control", "quit", "text/plain")->status, 403);
    EXPECT_EQ(client.Post("/control" + served.query, "plug\nquit", "text/plain")->status, 400);
    EXPECT_EQ(client.Post("/control" + served.query, std::string(5000, 'x'), "text/plain")->status, 413);
    EXPECT_EQ(client.Post("/control" + served.query, "plug", "text/plain")->status, 204);
    EXPECT_EQ(served.control.TakePosted(), std::vector<std::string>{"plug"});
}

// Until a page has read `text`.
std::string ReadUntil(const Served& served, const std::string& text)
{
    std::string read;
    httplib::Client client("127.0.0.1", served.port);
    client.Get("/events" + served.query, [&](const char* data, std::size_t size) {
        read.append(data, size);
        return read.find(text, read.size() - std::min(read.size(), size + text.size())) == std::string::npos;
    });
    return read;
}

TEST(Panel, IsNotHeldUpByPagesThatDoNotRead)
{
    auto served = std::make_unique<Served>();
    // The packaged HTTP library makes its tables at its first request, under a guard that ThreadSanitizer cannot see.
    ASSERT_TRUE(httplib::Client("127.0.0.1", served->port).Get("/"));
    std::vector<std::future<std::string>> pages;
    for (int i = 0; i < 3; ++i)
        pages.push_back(std::async(std::launch::async, [&] { return ReadUntil(*served, "the last word"); }));
    httplib::Client stuck("127.0.0.1", served->port);
    std::promise<void> isReading, mayEnd;
    const auto never = std::async(std::launch::async, [&] {
        stuck.Get("/events" + served->query, [&](const char*, std::size_t) {
            isReading.set_value();
            mayEnd.get_future().wait();
            return false;
        });
    });
    isReading.get_future().wait();
    for (int i = 0; i < 1000; ++i)
        served->panel.Show({.command = 5, .name = "battery information", .sent = simulator::Bytes(8000)});
    served->handset.Control().Set("identity/model", "Fjord 41");
    served->panel.Say("the last word");
    for (auto& page : pages)
        EXPECT_NE(page.get().find("Fjord 41"), std::string::npos);
    const auto begin = std::chrono::steady_clock::now();
    served.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3)); // the library's time-outs are longer
    mayEnd.set_value();
}

TEST(Feed, GivesALateReaderTheNewestOnly)
{
    std::string level = "1";
    Feed feed([&] { return Feed::Parts{{"battery", level}, {"plugged", "true"}}; });
    Feed::Reader reader;
    EXPECT_EQ(feed.Next(reader), "event: state\ndata: [\"battery\",1]\n\nevent: state\ndata: [\"plugged\",true]\n\n"
                                 "event: now\ndata:\n\n");
    for (int i = 0; i < 1000; ++i)
        feed.Add("said", std::to_string(i));
    level = "2";
    feed.Touch();
    const std::string news = *feed.Next(reader);
    EXPECT_TRUE(news.starts_with("event: state\ndata: [\"battery\",2]\n\nid: 701\nevent: said\ndata: 700\n\n")) << news;
    EXPECT_TRUE(news.ends_with("id: 1000\nevent: said\ndata: 999\n\nevent: now\ndata:\n\n")) << news;
    feed.Close();
    EXPECT_EQ(feed.Next(reader), std::nullopt);
}

} // namespace

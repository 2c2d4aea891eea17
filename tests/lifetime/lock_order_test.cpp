// The order of the library's locks, over a session with every export, callbacks and a handset that comes and goes.
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <set>

#include "manners/host_session.h"
#include "phn_platform_test.h"

namespace {

// The named locks, outermost first; others, and the last of these, are leaves. docs/architecture.md says why.
constexpr std::array<std::string_view, 6> kOrder = {"g_mtxWatch", "g_csCallbackPoll", "g_csCallbackRemoved",
                                                    "g_csDevice", "g_csCommand",      "a leaf"};

class LockOrder : public HostSession
{
protected:
    // The names of the library's locks, by their addresses, of the mutex by its object's. They are no exports, so the
    // file's symbols have them.
    std::map<const void*, std::string> Names()
    {
        Dl_info library{};
        dladdr(reinterpret_cast<void*>(Find<void()>("PHN_Startup")), &library);
        const std::string command = "nm --defined-only -C " + bench_.LibraryPath();
        const std::unique_ptr<FILE, int (*)(FILE*)> symbols(popen(command.c_str(), "r"), pclose);
        std::map<const void*, std::string> names;
        unsigned long offset = 0;
        char line[4096], name[64];
        while (std::fgets(line, sizeof line, symbols.get()))
            if (std::sscanf(line, "%lx %*c g_%59s", &offset, name) == 2) {
                const void* const place = static_cast<const char*>(library.dli_fbase) + offset;
                if (std::string_view(name) == "mtxWatch")
                    names[platform_test::LockOf(*static_cast<const HANDLE*>(place))] = "g_mtxWatch";
                else if (std::string_view(name).starts_with("cs"))
                    names[place] = std::string("g_") + name;
            }
        return names;
    }
};

std::size_t RankOf(std::string_view name)
{
    return static_cast<std::size_t>(std::ranges::find(kOrder, name) - kOrder.begin());
}

TEST_F(LockOrder, IsTheDocumentedOne)
{
    std::map<const void*, std::string> names;
    Run([&] { names = Names(); });
    ASSERT_EQ(names.size(), kOrder.size()) << "five with a place and the log's";
    std::set<std::pair<std::string, std::string>> nested;
    for (const auto& [outer, inner] : platform_test::LockOrder()) {
        const auto name = [&](const void* section) {
            return names.contains(section) && names[section] != "g_csLog" ? names[section] : "a leaf";
        };
        EXPECT_LT(RankOf(name(outer)), RankOf(name(inner))) << name(inner) << " is taken under " << name(outer);
        nested.emplace(name(outer), name(inner));
    }
    for (const auto& [outer, inner] :
         {std::pair("g_mtxWatch", "a leaf"), std::pair("g_csCallbackPoll", "g_csCallbackRemoved"),
          std::pair("g_csCallbackRemoved", "g_csDevice"), std::pair("g_csCommand", "a leaf")})
        EXPECT_TRUE(nested.contains({outer, inner})) << "the session shows " << inner << " under " << outer;
}

} // namespace

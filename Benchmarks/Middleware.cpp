#include "Benchmarks/Middleware.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "gen/dbus/daebrowserapi-generated.h"
#include "gen/dbus/metadatasearch-generated.h"

namespace Benchmarks {
namespace {

// One of them is kTitle.
constexpr std::array kTitles{"news",    "weather", "harbour",  "ferry",  "storm",   "island",   "garden",
                             "kitchen", "concert", "comedy",   "crime",  "village", "doctor",   "train",
                             "forest",  "river",   "mountain", "winter", "summer",  "football", "tennis",
                             "cycling", "debate",  "quiz",     "cartoon"};
const uint32_t kProgrammes = kTitles.size() * Count(400);

// Ids of programmes begin with 1.
std::string NameOfProgramme(uint32_t id) {
    return std::string(kTitles[(id - 1) % kTitles.size()]) + " " + std::to_string(id);
}

struct Search {
    uint32_t query = 0;
    uint32_t offset = 0;
    uint32_t count = 0;
    std::vector<uint32_t> found;

    [[nodiscard]] uint32_t Size() const { return static_cast<uint32_t>(found.size()); }
    [[nodiscard]] uint32_t Shown() const { return offset >= Size() ? 0 : std::min(count, Size() - offset); }
};

// Ids are places, counted from 1. Nothing is ever taken away: a measurement begins with a process of its own.
struct Database {
    std::vector<std::string> names;
    std::vector<std::string> queries;
    std::vector<Search> searches;

    Database() {
        for (uint32_t id = 1; id <= kProgrammes; ++id)
            names.push_back(NameOfProgramme(id));
    }

    // The results of a search have its number.
    Search& At(uint32_t id) { return searches.at(id - 1); }

    void Run(Search& search) const {
        search.found.clear();
        for (uint32_t place = 0; place < kProgrammes; ++place) {
            if (names[place].find(queries.at(search.query - 1)) != std::string::npos)
                search.found.push_back(place + 1);
        }
    }
};

// What is sent for a call; null for one without a result.
using Answer = GVariant* (*)(Database& database, GVariant* arguments);

uint32_t NumberAt(GVariant* arguments, gsize place) {
    uint32_t number = 0;
    g_variant_get_child(arguments, place, "u", &number);
    return number;
}

GVariant* AnswerYes(Database& /*database*/, GVariant* /*arguments*/) {
    return g_variant_new("(b)", TRUE);
}

GVariant* AnswerNothing(Database& /*database*/, GVariant* /*arguments*/) {
    return nullptr;
}

GVariant* AnswerChannelList(Database& /*database*/, GVariant* /*arguments*/) {
    std::vector<guint32> ids(kChannels);
    std::iota(ids.begin(), ids.end(), 1);
    return g_variant_new(
        "(@au)", g_variant_new_fixed_array(G_VARIANT_TYPE_UINT32, ids.data(), ids.size(), sizeof(guint32)));
}

GVariant* AnswerSubscribe(Database& /*database*/, GVariant* arguments) {
    const char* name = nullptr;
    g_variant_get_child(arguments, 1, "&s", &name);
    const auto number = static_cast<guint>(std::strtoul(name + std::strlen(kStreamEvent), nullptr, 10));
    return g_variant_new("(u)", kStreamEventJob + number);
}

GVariant* AnswerRetain(Database& /*database*/, GVariant* arguments) {
    const uint32_t id = NumberAt(arguments, 0);
    return g_variant_new("(b)", id >= 1 && id <= kChannels);
}

GVariant* AnswerChannelInfo(Database& /*database*/, GVariant* arguments) {
    return ChannelInfo(NumberAt(arguments, 0));
}

GVariant* AnswerAddSearch(Database& database, GVariant* /*arguments*/) {
    database.searches.emplace_back();
    return g_variant_new("(u)", static_cast<guint>(database.searches.size()));
}

GVariant* AnswerAddQuery(Database& database, GVariant* arguments) {
    const char* text = nullptr;
    g_variant_get_child(arguments, 2, "&s", &text);
    database.queries.emplace_back(text);
    return g_variant_new("(u)", static_cast<guint>(database.queries.size()));
}

GVariant* AnswerSetQuery(Database& database, GVariant* arguments) {
    database.At(NumberAt(arguments, 0)).query = NumberAt(arguments, 1);
    return g_variant_new("(b)", TRUE);
}

GVariant* AnswerResults(Database& /*database*/, GVariant* arguments) {
    return g_variant_new("(ub)", NumberAt(arguments, 0), TRUE);
}

GVariant* AnswerSetWindow(Database& database, GVariant* arguments) {
    Search& search = database.At(NumberAt(arguments, 0));
    g_variant_get(arguments, "(uii)", nullptr, &search.offset, &search.count);
    return g_variant_new("(bb)", TRUE, TRUE);
}

GVariant* AnswerStart(Database& database, GVariant* arguments) {
    database.Run(database.At(NumberAt(arguments, 0)));
    return nullptr;
}

GVariant* AnswerQueryResults(Database& database, GVariant* arguments) {
    const Search& search = database.At(NumberAt(arguments, 0));
    return g_variant_new("(buuub)", TRUE, search.offset, search.Shown(), search.Size(), TRUE);
}

GVariant* AnswerItem(Database& database, GVariant* arguments) {
    const Search& search = database.At(NumberAt(arguments, 0));
    const uint32_t index = NumberAt(arguments, 1);
    const bool isThere = index < search.Shown();
    return g_variant_new("(bub)", isThere, isThere ? search.found[search.offset + index] : 0, TRUE);
}

GVariant* AnswerProgramme(Database& /*database*/, GVariant* arguments) {
    const uint32_t id = NumberAt(arguments, 0);
    const auto channel = static_cast<guint>((id - 1) / kTitles.size() % kChannels + 1);
    return g_variant_new("(uus@s@suuub)", channel, id, NameOfProgramme(id).c_str(),
                         g_variant_new_printf("What programme %u is about, in a sentence or two", id),
                         g_variant_new_printf("crid://television.invalid/%u", id),
                         1'700'000'000 + id / kChannels * 1800, 1800U, id % 3 == 0 ? 12U : 0U,
                         id >= 1 && id <= kProgrammes);
}

// The methods of all interfaces.
const std::map<std::string_view, Answer> kAnswers{
    {"GetKeyMask", [](Database&, GVariant*) { return g_variant_new("(u)", kKeyMask); }},
    {"GetChannelList", &AnswerChannelList},
    {"StreamEventSubscribe", &AnswerSubscribe},
    {"StreamEventUnsubscribe", &AnswerYes},

    {"Retain", &AnswerRetain},
    {"Release", &AnswerNothing},
    {"GetChannelInfo", &AnswerChannelInfo},

    {"MdsAdd", &AnswerAddSearch},
    {"MdsRetain", &AnswerYes},
    {"MdsRelease", &AnswerNothing},
    {"MdsSetQuery", &AnswerSetQuery},
    {"MdsGetResults", &AnswerResults},
    {"QcAddDataModeStr", &AnswerAddQuery},
    {"QcRetain", &AnswerYes},
    {"QcRelease", &AnswerNothing},
    {"SrRetain", &AnswerYes},
    {"SrRelease", &AnswerNothing},
    {"SrSetQueryWindow", &AnswerSetWindow},
    {"StartSearch", &AnswerStart},
    {"SrQueryResults", &AnswerQueryResults},
    {"SrItemAtIndex", &AnswerItem},
    {"PcGet", &AnswerProgramme},
};

void OnCall(GDBusConnection* /*connection*/, const gchar* /*sender*/, const gchar* /*path*/,
            const gchar* /*interface*/, const gchar* method, GVariant* arguments,
            GDBusMethodInvocation* invocation, gpointer database) {
    if (const auto found = kAnswers.find(method); found != kAnswers.end())
        g_dbus_method_invocation_return_value(invocation,
                                              found->second(*static_cast<Database*>(database), arguments));
    else
        g_dbus_method_invocation_return_error(invocation, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD,
                                              "%s is not measured", method);
}

const std::map<const char*, GDBusInterfaceInfo*> kInterfaces{
    {kApiName, idaebrowser_api_interface_info()},
    {kCacheName, ijschannel_cache_interface_info()},
    {kSearchName, imeta_data_search_interface_info()},
};

void Say(GDBusConnection* /*connection*/, const gchar* /*name*/, gpointer descriptor) {
    if (write(GPOINTER_TO_INT(descriptor), "", 1) != 1)
        _exit(1);
}

void GiveUp(GDBusConnection* /*connection*/, const gchar* /*name*/, gpointer /*descriptor*/) {
    _exit(1);
}

// Writes a byte to `ready` for each name once it is owned, and serves until it is killed.
[[noreturn]] void Serve(int ready) {
    Database database;
    const GDBusInterfaceVTable methods{&OnCall, nullptr, nullptr, {}};
    const GObjectPtr<GDBusConnection> bus = GetDBus();
    for (const auto& [name, interface] : kInterfaces) {
        if (!bus || g_dbus_connection_register_object(bus.get(), kObjectPath, interface, &methods, &database,
                                                      nullptr, nullptr) == 0)
            _exit(1);
        g_bus_own_name_on_connection(bus.get(), name, G_BUS_NAME_OWNER_FLAGS_NONE, &Say, &GiveUp,
                                     GINT_TO_POINTER(ready), nullptr);
    }
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
    _exit(0);
}

}  // namespace

GVariant* ChannelInfo(uint32_t id) {
    const uint32_t network = id % 7 + 1;
    return g_variant_new("(@s@s@suuuuub@sbbbbusub)", g_variant_new_printf("Channel %u", id),
                         g_variant_new_printf("Television channel number %u", id),
                         g_variant_new_printf("What channel %u is about", id), 12U, network, network,
                         id / 10 + 1, id, id % 5 == 0, g_variant_new_printf("ccid:%u.0", id), TRUE, FALSE,
                         FALSE, FALSE, 0xFFFFFFFFU, "", id, id >= 1 && id <= kChannels);
}

Middleware::Middleware() {
    int ready[2];
    if (pipe(ready) != 0)
        return;
    m_process = fork();
    if (m_process == 0) {
        close(ready[0]);
        Serve(ready[1]);
    }
    close(ready[1]);
    char byte = 0;
    m_serves = m_process > 0;
    for (size_t i = 0; m_serves && i < kInterfaces.size(); ++i)
        m_serves = read(ready[0], &byte, 1) == 1;
    close(ready[0]);
    if (!m_serves)
        std::fputs("No session bus, or one of the receiver's names is taken\n", stderr);
}

Middleware::~Middleware() {
    if (m_process > 0) {
        kill(m_process, SIGTERM);
        waitpid(m_process, nullptr, 0);
    }
}

bool AskForChannel(IJSChannelCache* cache, uint32_t id) {
    GCharPtr name, longName, description, ccid, ipBroadcastId;
    guint idType = 0, nid = 0, onid = 0, tsid = 0, sid = 0, maxBitRate = 0, majorChannel = 0;
    gboolean radio = FALSE, authorised = FALSE, hidden = FALSE, locked = FALSE, manualBlock = FALSE,
             known = FALSE;
    return ijschannel_cache_call_get_channel_info_sync(
               cache, id, OutPointer(name), OutPointer(longName), OutPointer(description), &idType, &nid,
               &onid, &tsid, &sid, &radio, OutPointer(ccid), &authorised, &hidden, &locked, &manualBlock,
               &maxBitRate, OutPointer(ipBroadcastId), &majorChannel, &known, nullptr, nullptr) &&
           known;
}

int RunAgainstMiddleware(int argc, char** argv) {
    const Middleware middleware;
    if (!middleware.Serves())
        return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

}  // namespace Benchmarks

// A search by title over 10,000 programmes, from the page's call until it has read its part of the results,
// against the bare remote calls behind it. Run it under dbus-run-session.
//
// The receiver does not tell when a search has ended; the page's search asks, the first time after a moment
// in which the main loop sleeps. It is measured with and without this sleep; the bare calls never sleep.
#include <JavaScriptCore/JavaScript.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <vector>

#include <benchmark/benchmark.h>

#include <gio/gio.h>

#include "Benchmarks/Count.h"
#include "Benchmarks/Middleware.h"
#include "Benchmarks/Script.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiOipfSearchManager.h"
#include "JavaScript/Src/COipfSearchManagerImpl.h"
#include "gen/dbus/metadatasearch-generated.h"

namespace {

using Benchmarks::Script;
using Clock = std::chrono::steady_clock;

constexpr uint32_t kBroadcast = 1;
constexpr uint32_t kFieldName = 1;
constexpr uint32_t kContains = 6;
// What the page reads of the results.
const uint32_t kWindow = Benchmarks::Count(20);

Clock::duration slept{};

// In place of the main loop's poll; synchronous calls have loops of their own.
gint PollAndMeasure(GPollFD* descriptors, guint count, gint timeout) {
    const auto start = Clock::now();
    const gint result = g_poll(descriptors, count, timeout);
    slept += Clock::now() - start;
    return result;
}

// Every search stays alive until the measurement is over, so that nothing is released within it.
class Page {
 public:
    Page() {
        const JSObjectRef begin = m_script.Function(R"(function (manager, title, count) {
            Object.assign(globalThis, { manager, title, count });
            manager.onMetadataSearch = function (search, state) {
                ended = true;
                found = Array.from(search.result, programme => [programme.name, programme.description,
                    programme.startTime, programme.duration, programme.channelID]);
            };
        })");
        const JSContextRef context = m_script.Context();
        m_script.Call(begin,
                      {OipfJavaScript::MakeObject<OipfJavaScript::jiOipfSearchManager>(context),
                       JSValueMakeString(context, OipfJavaScript::JSStringHandle(Benchmarks::kTitle).Get()),
                       JSValueMakeNumber(context, kWindow)});
    }

    // The search, ended, and read if it found something; null when the script threw or it never ends.
    [[nodiscard]] JSValueRef Search() const {
        const JSValueRef search = m_script.Call(m_search);
        const auto deadline = Clock::now() + std::chrono::minutes(1);
        while (search != nullptr && !m_script.IsTrue(m_script.Call(m_hasEnded))) {
            if (Clock::now() > deadline)
                return nullptr;
            g_main_context_iteration(nullptr, TRUE);
        }
        return search;
    }
    [[nodiscard]] bool HasReadAll() const { return m_script.IsTrue(m_script.Call(m_hasRead)); }
    void Keep(JSValueRef value) { m_script.Keep(value); }

 private:
    Script m_script;
    const JSObjectRef m_search = m_script.Function(R"(function () {
        globalThis.ended = false;
        globalThis.found = [];
        const search = manager.createSearch(1);
        search.setQuery(search.createQuery('Programme.name', 6, title));
        search.result.getResults(0, count);
        return search;
    })");
    const JSObjectRef m_hasEnded = m_script.Function("function () { return ended; }");
    const JSObjectRef m_hasRead = m_script.Function(R"(function () {
        return new Set(found.map(values => values[4])).size === count &&
            found.every(values => values[0].startsWith(title) && values[1] && values[2] && values[3]);
    })");
};

// The id of the results, complete; 0 when something failed.
[[nodiscard]] guint CallForResults(IMetaDataSearch* proxy) {
    guint search = 0, query = 0, results = 0, offset = 0, count = 0, size = 0;
    gboolean done = FALSE, accepted = FALSE, complete = FALSE;
    const bool answered =
        imeta_data_search_call_mds_add_sync(proxy, kBroadcast, &search, nullptr, nullptr) &&
        imeta_data_search_call_mds_retain_sync(proxy, search, &done, nullptr, nullptr) &&
        imeta_data_search_call_qc_add_data_mode_str_sync(proxy, kFieldName, kContains, Benchmarks::kTitle,
                                                         &query, nullptr, nullptr) &&
        imeta_data_search_call_qc_retain_sync(proxy, query, &done, nullptr, nullptr) &&
        imeta_data_search_call_mds_set_query_sync(proxy, search, query, &done, nullptr, nullptr) &&
        imeta_data_search_call_mds_get_results_sync(proxy, search, &results, &done, nullptr, nullptr) &&
        imeta_data_search_call_sr_retain_sync(proxy, results, &done, nullptr, nullptr) &&
        imeta_data_search_call_sr_set_query_window_sync(proxy, results, 0, kWindow, &accepted, &done, nullptr,
                                                        nullptr) &&
        imeta_data_search_call_start_search_sync(proxy, search, nullptr, nullptr) &&
        imeta_data_search_call_sr_query_results_sync(proxy, results, &complete, &offset, &count, &size, &done,
                                                     nullptr, nullptr);
    return answered && complete && count == kWindow ? results : 0;
}

class Proxies {
 public:
    [[nodiscard]] bool Search() const {
        const guint results = CallForResults(m_search.get());
        std::set<guint> channels;
        for (guint index = 0; results != 0 && index < kWindow; ++index) {
            guint programme = 0, channel = 0, event = 0, begin = 0, duration = 0, rating = 0;
            gboolean isThere = FALSE, known = FALSE;
            GCharPtr name, description, crid;
            if (!imeta_data_search_call_sr_item_at_index_sync(m_search.get(), results, index, &isThere,
                                                              &programme, &known, nullptr, nullptr) ||
                !isThere ||
                !imeta_data_search_call_pc_get_sync(
                    m_search.get(), programme, &channel, &event, OutPointer(name), OutPointer(description),
                    OutPointer(crid), &begin, &duration, &rating, &known, nullptr, nullptr) ||
                !known ||
                (channels.insert(channel).second && !Benchmarks::AskForChannel(m_channels.get(), channel)))
                return false;
        }
        return channels.size() == kWindow;
    }

 private:
    const GObjectPtr<IMetaDataSearch> m_search =
        Benchmarks::NewProxy(&imeta_data_search_proxy_new_sync, Benchmarks::kSearchName);
    const GObjectPtr<IJSChannelCache> m_channels =
        Benchmarks::NewProxy(&ijschannel_cache_proxy_new_sync, Benchmarks::kCacheName);
};

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double Milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

// The page and the bare calls search by turns, so that what else the machine does falls on both alike. The
// counters are milliseconds for a search, medians of the repetition; the benchmark's own time is that of
// both.
void Search(benchmark::State& state) {
    g_main_context_set_poll_func(nullptr, &PollAndMeasure);
    Page page;
    const Proxies proxies;
    std::vector<double> inPage, withSleep, bare;
    for (auto _ : state) {
        slept = {};
        auto start = Clock::now();
        const JSValueRef search = page.Search();
        const auto ofPage = Clock::now() - start;
        if (search == nullptr || !page.HasReadAll()) {
            state.SkipWithError("the page has not read what it searched for");
            return;
        }
        page.Keep(search);

        start = Clock::now();
        if (!proxies.Search()) {
            state.SkipWithError("the bare calls found nothing");
            return;
        }
        const auto ofCalls = Clock::now() - start;
        state.SetIterationTime(std::chrono::duration<double>(ofPage + ofCalls).count());
        inPage.push_back(Milliseconds(ofPage - slept));
        withSleep.push_back(Milliseconds(ofPage));
        bare.push_back(Milliseconds(ofCalls));
    }
    state.counters["page"] = Median(inPage);
    state.counters["page_with_sleep"] = Median(withSleep);
    state.counters["bare"] = Median(bare);
}

BENCHMARK(Search)->UseManualTime();

}  // namespace

int main(int argc, char** argv) {
    return Benchmarks::RunAgainstMiddleware(argc, argv);
}

#include "Benchmarks/SearchMiddleware.h"

#include <algorithm>
#include <array>
#include <vector>

#include "Benchmarks/Middleware.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "gen/dbus/metadatasearch-generated.h"

namespace Benchmarks {
namespace {

constexpr std::array<const char*, kTitlesInARow> kTitles{
    "news",   "weather",  "harbour", "ferry",   "storm",  "island", "garden", "kitchen",  "concert",
    "comedy", "crime",    "village", "doctor",  "train",  "forest", "river",  "mountain", "winter",
    "summer", "football", "tennis",  "cycling", "debate", "quiz",   "cartoon"};

struct Search {
    uint32_t query = 0;
    uint32_t offset = 0;
    uint32_t count = 0;
    std::vector<uint32_t> found;
};

// Ids are places, counted from 1. Nothing is ever taken away: a measurement begins with a process of its own.
struct Database {
    std::vector<std::string> names;
    std::vector<std::string> queries;
    std::vector<Search> searches;

    Database() {
        for (uint32_t id = 1; id <= kProgrammes; ++id)
            names.push_back(ProgrammeValues(id).name);
    }

    Search& At(uint32_t id) { return searches.at(id - 1); }

    static uint32_t Shown(const Search& search) {
        const auto size = static_cast<uint32_t>(search.found.size());
        return search.offset >= size ? 0 : std::min(search.count, size - search.offset);
    }
};

Database& Of(gpointer data) {
    return *static_cast<Database*>(data);
}

template <void (*Complete)(IMetaDataSearch*, GDBusMethodInvocation*, gboolean)>
gboolean AnswerYes(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint /*id*/,
                   gpointer /*data*/) {
    Complete(skeleton, invocation, TRUE);
    return TRUE;
}

template <void (*Complete)(IMetaDataSearch*, GDBusMethodInvocation*)>
gboolean AnswerNothing(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint /*id*/,
                       gpointer /*data*/) {
    Complete(skeleton, invocation);
    return TRUE;
}

gboolean AnswerAddSearch(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, gint /*target*/,
                         gpointer data) {
    Of(data).searches.emplace_back();
    imeta_data_search_complete_mds_add(skeleton, invocation, static_cast<guint>(Of(data).searches.size()));
    return TRUE;
}

gboolean AnswerAddQuery(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint /*field*/,
                        guint /*mode*/, const gchar* text, gpointer data) {
    Of(data).queries.emplace_back(text);
    imeta_data_search_complete_qc_add_data_mode_str(skeleton, invocation,
                                                    static_cast<guint>(Of(data).queries.size()));
    return TRUE;
}

gboolean AnswerSetQuery(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint search,
                        guint query, gpointer data) {
    Of(data).At(search).query = query;
    imeta_data_search_complete_mds_set_query(skeleton, invocation, TRUE);
    return TRUE;
}

// The results of a search have its number.
gboolean AnswerResults(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint search,
                       gpointer /*data*/) {
    imeta_data_search_complete_mds_get_results(skeleton, invocation, search, TRUE);
    return TRUE;
}

gboolean AnswerSetWindow(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint results,
                         gint start, gint count, gpointer data) {
    Of(data).At(results).offset = static_cast<uint32_t>(start);
    Of(data).At(results).count = static_cast<uint32_t>(count);
    imeta_data_search_complete_sr_set_query_window(skeleton, invocation, TRUE, TRUE);
    return TRUE;
}

gboolean AnswerStart(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint id, gpointer data) {
    Database& database = Of(data);
    Search& search = database.At(id);
    const std::string& text = database.queries.at(search.query - 1);
    search.found.clear();
    for (uint32_t place = 0; place < kProgrammes; ++place) {
        if (database.names[place].find(text) != std::string::npos)
            search.found.push_back(place + 1);
    }
    imeta_data_search_complete_start_search(skeleton, invocation);
    return TRUE;
}

gboolean AnswerQueryResults(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint id,
                            gpointer data) {
    const Search& search = Of(data).At(id);
    imeta_data_search_complete_sr_query_results(skeleton, invocation, TRUE, search.offset,
                                                Database::Shown(search),
                                                static_cast<guint>(search.found.size()), TRUE);
    return TRUE;
}

gboolean AnswerItem(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint id, guint index,
                    gpointer data) {
    const Search& search = Of(data).At(id);
    const bool isThere = index < Database::Shown(search);
    imeta_data_search_complete_sr_item_at_index(skeleton, invocation, isThere,
                                                isThere ? search.found[search.offset + index] : 0, TRUE);
    return TRUE;
}

gboolean AnswerProgramme(IMetaDataSearch* skeleton, GDBusMethodInvocation* invocation, guint id,
                         gpointer /*data*/) {
    const ProgrammeValues programme(id);
    imeta_data_search_complete_pc_get(skeleton, invocation, programme.channelId, programme.eventId,
                                      programme.name.c_str(), programme.description.c_str(),
                                      programme.crid.c_str(), programme.start, programme.duration,
                                      programme.rating, id >= 1 && id <= kProgrammes);
    return TRUE;
}

}  // namespace

ProgrammeValues::ProgrammeValues(uint32_t id)
    : channelId((id - 1) / kTitlesInARow % kChannels + 1),
      eventId(id),
      name(std::string(kTitles[(id - 1) % kTitlesInARow]) + " " + std::to_string(id)),
      description("What programme " + std::to_string(id) + " is about, in a sentence or two"),
      crid("crid://television.invalid/" + std::to_string(id)),
      start(1'700'000'000 + id / kChannels * 1800),
      duration(1800),
      rating(id % 3 == 0 ? 12 : 0) {}

bool ExportSearch(GDBusConnection* bus) {
    static Database database;
    IMetaDataSearch* skeleton = imeta_data_search_skeleton_new();
    const auto answer = [skeleton](const char* method, GCallback handler) {
        g_signal_connect(skeleton, method, handler, &database);
    };
    answer("handle-mds-add", G_CALLBACK(&AnswerAddSearch));
    answer("handle-mds-retain", G_CALLBACK((&AnswerYes<imeta_data_search_complete_mds_retain>)));
    answer("handle-mds-release", G_CALLBACK((&AnswerNothing<imeta_data_search_complete_mds_release>)));
    answer("handle-mds-set-query", G_CALLBACK(&AnswerSetQuery));
    answer("handle-mds-get-results", G_CALLBACK(&AnswerResults));
    answer("handle-qc-add-data-mode-str", G_CALLBACK(&AnswerAddQuery));
    answer("handle-qc-retain", G_CALLBACK((&AnswerYes<imeta_data_search_complete_qc_retain>)));
    answer("handle-qc-release", G_CALLBACK((&AnswerNothing<imeta_data_search_complete_qc_release>)));
    answer("handle-sr-retain", G_CALLBACK((&AnswerYes<imeta_data_search_complete_sr_retain>)));
    answer("handle-sr-release", G_CALLBACK((&AnswerNothing<imeta_data_search_complete_sr_release>)));
    answer("handle-sr-set-query-window", G_CALLBACK(&AnswerSetWindow));
    answer("handle-start-search", G_CALLBACK(&AnswerStart));
    answer("handle-sr-query-results", G_CALLBACK(&AnswerQueryResults));
    answer("handle-sr-item-at-index", G_CALLBACK(&AnswerItem));
    answer("handle-pc-get", G_CALLBACK(&AnswerProgramme));
    return g_dbus_interface_skeleton_export(G_DBUS_INTERFACE_SKELETON(skeleton), bus, kObjectPath, nullptr);
}

}  // namespace Benchmarks

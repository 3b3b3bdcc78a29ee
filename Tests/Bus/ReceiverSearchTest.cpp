// Searches over the programmes of a scenario, on a clock of the test's own.
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

#include "Tests/Bus/ReceiverSimulation.h"

namespace {

using namespace ReceiverTest;
using testing::ElementsAre;
using testing::IsEmpty;

// Which of a morning's programmes a condition finds, by their event ids.
class ACondition : public testing::Test {
 protected:
    template <typename Value>
    std::vector<int> Finds(QueryField field, QueryMode mode, const Value& value) {
        return Found(search.addQuery(static_cast<std::uint32_t>(field), static_cast<std::uint32_t>(mode),
                                     QueryValue(value)));
    }
    std::vector<int> FindsWithin(const std::vector<Constraint>& constraints) {
        return Found(search.addQuery(constraints));
    }
    std::vector<int> Found(std::uint32_t queryId) {
        EXPECT_NE(queryId, 0U);
        const auto id = search.addSearch(1);
        EXPECT_TRUE(search.setQuery(id, queryId));
        search.start(id);
        return EventsOf(id);
    }
    // When it has come to its end.
    std::vector<int> EventsOf(std::uint32_t searchId) {
        simulation.timers.pass(0);
        const auto* results = search.results().find(*search.resultsOf(searchId));
        EXPECT_TRUE(results->complete);
        std::vector<int> events;
        for (const auto programme : results->programmes)
            events.push_back(search.programme(programme)->programme->eventId);
        return events;
    }
    static std::uint32_t Number(QueryField field) { return static_cast<std::uint32_t>(field); }

    Simulation simulation{R"({"broadcast": {"channels": [
      {"id": 7, "name": "One", "id_type": "ID_DVB_T", "ccid": "ccid://1.1", "programmes": [
        {"event_id": 1, "id": "crid://Tv/1", "name": "\u00dcber Nacht", "start_minutes": 0, "duration_minutes": 10},
        {"event_id": 2, "id": "dvb://1.2.3;2", "name": "1984", "start_minutes": 10, "duration_minutes": 90,
         "parental_rating": 16}]},
      {"id": 8, "name": "Ten", "id_type": "ID_DVB_T", "ccid": "ccid://1.10", "programmes": [
        {"event_id": 3, "name": "News", "start_minutes": 5, "duration_minutes": 5}]}]}})"};
    MetadataSearch& search = simulation.me.search();
};

TEST_F(ACondition, ComparesEveryFieldAsNumberOrText) {
    using enum QueryField;
    using enum QueryMode;
    EXPECT_THAT(Finds(Any, Equal, 5U), ElementsAre(1, 3, 2));
    EXPECT_THAT(Finds(Name, Contains, "\u00fcBER"), ElementsAre(1));
    EXPECT_THAT(Finds(Name, Equal, "news"), IsEmpty());
    EXPECT_THAT(Finds(Name, Less, "News"), ElementsAre(2));
    EXPECT_THAT(Finds(Name, Equal, 1984U), ElementsAre(2));
    EXPECT_THAT(Finds(LongName, Equal, ""), ElementsAre(1, 3, 2));
    EXPECT_THAT(Finds(StartTime, GreaterOrEqual, static_cast<std::uint32_t>(kStartUtc + 300)),
                ElementsAre(3, 2));
    EXPECT_THAT(Finds(EndTime, Greater, static_cast<std::uint32_t>(kStartUtc + 600)), ElementsAre(2));
    EXPECT_THAT(Finds(Duration, LessOrEqual, "600"), ElementsAre(1, 3));
    EXPECT_THAT(Finds(Duration, NotEqual, "long"), ElementsAre(1, 3, 2));
    EXPECT_THAT(Finds(Duration, Contains, 40U), ElementsAre(2)) << "5400 seconds";
    EXPECT_THAT(Finds(ChannelId, Equal, 7U), ElementsAre(1, 2));
    EXPECT_THAT(Finds(ChannelId, Equal, "ccid://1.1"), ElementsAre(1, 2));
    EXPECT_THAT(Finds(ProgrammeId, Equal, "CRID://tV/1"), ElementsAre(1));
    EXPECT_THAT(Finds(ProgrammeIdType, Equal, 0U), ElementsAre(1));
    EXPECT_THAT(Finds(ParentalRating, Greater, 12U), ElementsAre(2));
    EXPECT_THAT(Finds(Episode, NotEqual, 1U), IsEmpty()) << "no programme has one";
    EXPECT_EQ(search.addQuery(14, 0, QueryValue(0U)), 0U);
    EXPECT_EQ(search.addQuery(1, 7, QueryValue(0U)), 0U);
    EXPECT_EQ(search.addQuery(1), 0U);
}

TEST_F(ACondition, OfConstraintsTakesAnyValueOfAFieldAndEveryField) {
    const auto channel = Number(QueryField::ChannelId);
    EXPECT_THAT(FindsWithin({}), ElementsAre(1, 3, 2));
    EXPECT_THAT(FindsWithin({{channel, 7U}, {channel, 8U}}), ElementsAre(1, 3, 2));
    EXPECT_THAT(FindsWithin({{channel, "ccid://1.10"}, {Number(QueryField::Name), "News"}}), ElementsAre(3));
    EXPECT_THAT(FindsWithin({{channel, 7U}, {Number(QueryField::Name), "News"}}), IsEmpty());
    EXPECT_EQ(search.addQuery({{99U, 1U}}), 0U);
}

TEST_F(ACondition, IsSearchedWithinTheBoundsAndTheTargetOfTheSearch) {
    const auto id = search.addSearch(1);
    const auto found = [&](std::uint32_t searchId) {
        search.start(searchId);
        return EventsOf(searchId).size();
    };
    ASSERT_TRUE(search.setQuery(id, search.addQuery(1, 0, QueryValue("News"))));
    EXPECT_EQ(found(id), 1U);
    ASSERT_TRUE(search.setQuery(id, 0));
    EXPECT_EQ(found(id), 3U);
    ASSERT_TRUE(search.setBounds(id, 1, 1));
    ASSERT_TRUE(search.setWindow(*search.resultsOf(id), 0, 10));
    EXPECT_EQ(found(id), 1U);
    EXPECT_FALSE(search.setBounds(id, 0, -1));
    EXPECT_EQ(found(search.addSearch(2)), 0U);
    EXPECT_EQ(search.addSearch(3), 0U);
}

TEST_F(ACondition, IsSearchedInTheWantedOrderAndFoundInAWindowOfTheResults) {
    using enum QueryMode;
    const auto channel = Number(QueryField::ChannelId), duration = Number(QueryField::Duration);
    const auto id = search.addSearch(1);
    const auto found = [&] {
        search.start(id);
        EXPECT_FALSE(search.results().find(*search.resultsOf(id))->complete);
        return EventsOf(id);
    };
    const auto isLong = search.addQuery(duration, static_cast<std::uint32_t>(Greater), QueryValue(300U));
    const auto isShort = search.negate(isLong);
    ASSERT_TRUE(search.setQuery(id, isLong));
    EXPECT_THAT(found(), ElementsAre(1, 2));
    ASSERT_TRUE(search.setOrderBy(id, {{duration, false}}));
    EXPECT_THAT(found(), ElementsAre(2, 1));
    ASSERT_TRUE(search.addConstraints(id, search.addQuery({{channel, 8U}})));
    EXPECT_THAT(found(), IsEmpty());
    ASSERT_TRUE(search.clearConstraints(id));
    EXPECT_THAT(found(), ElementsAre(2, 1));
    const auto results = *search.resultsOf(id);
    ASSERT_TRUE(search.setWindow(results, 1, 5));
    EXPECT_EQ(search.results().find(results)->shown(), 1u);
    EXPECT_FALSE(search.setWindow(results, -1, 5));
    // A query outlives its id where a search or another query still needs it.
    MetadataSearch::release(search.queries(), isLong);
    EXPECT_FALSE(search.setQuery(id, isLong));
    EXPECT_THAT(found(), ElementsAre(2, 1));
    EXPECT_THAT(Found(*isShort), ElementsAre(3));
    // Objects end with the last of those who retained them.
    for (int time = 0; time < 2; ++time)
        EXPECT_TRUE(MetadataSearch::retain(search.searches(), id));
    MetadataSearch::release(search.searches(), id);
    EXPECT_NE(search.searches().find(id), nullptr);
    MetadataSearch::release(search.searches(), id);
    EXPECT_EQ(search.searches().find(id), nullptr);
    // Queries joined with themselves again and again do not grow for ever.
    auto grown = search.addQuery(0);
    int joins = 0;
    while (const auto larger = search.join(MetadataSearch::Junction::Or, grown, grown)) {
        grown = *larger;
        ASSERT_LT(++joins, 100);
    }
}

TEST(ASearch, KnowsTheSchedulesOfSomeHoursAndEachShowingByItsOwnId) {
    Simulation simulation(R"({"search": {"hours": 3}, "broadcast": {"channels": [
      {"id": 1, "name": "Empty", "id_type": "ID_DVB_T"},
      {"id": 2, "name": "Round", "id_type": "ID_DVB_T", "programmes": [
        {"event_id": 1, "name": "First", "start_minutes": -30, "duration_minutes": 20},
        {"event_id": 2, "name": "Second", "start_minutes": -10, "duration_minutes": 70}]},
      {"id": 3, "name": "Long", "id_type": "ID_DVB_T", "programmes": [
        {"event_id": 3, "name": "Tomorrow", "start_minutes": 1440, "duration_minutes": 60}]}]}})");
    auto& search = simulation.me.search();
    const auto id = search.addSearch(1);
    const auto found = [&] {
        search.start(id);
        simulation.timers.pass(0);
        return search.results().find(*search.resultsOf(id))->programmes;
    };
    const auto describe = [&](std::uint32_t showing) {
        const auto known = search.programme(showing);
        return known ? std::to_string(known->programme->eventId) + " at " +
                           std::to_string((known->start - kStartUtc) / 60)
                     : std::string("nothing");
    };
    const auto described = [&] {
        std::vector<std::string> showings;
        for (const auto showing : found())
            showings.push_back(describe(showing));
        return showings;
    };
    const auto early = found();
    EXPECT_THAT(described(),
                ElementsAre("2 at -10", "1 at 60", "2 at 80", "1 at 150", "2 at 170", "3 at 1440"));
    // What is over is still known to those who have found it, even after months and many other rounds.
    simulation.timers.pass(std::int64_t{1000} * 90 * 60'000);
    EXPECT_EQ(describe(early[0]), "2 at -10");
    EXPECT_EQ(describe(early[4]), "2 at 170");
    EXPECT_THAT(described(), ElementsAre("2 at 89990", "3 at 90000", "1 at 90060", "3 at 90060", "2 at 90080",
                                         "3 at 90120", "1 at 90150", "2 at 90170"));
    simulation.world.setValue("/search/hours", "0");
    EXPECT_EQ(found().size(), 3U) << "each programme once";
    simulation.world.setValue("/broadcast/channels/1/hidden", "true");
    EXPECT_EQ(describe(early[0]), "nothing");
    EXPECT_EQ(found().size(), 1U) << "of the other channel";
    for (const std::uint32_t none : {0U, 3U * 2048 + 1, 0xFFFFFFFFU})
        EXPECT_EQ(describe(none), "nothing") << none;
}

TEST(ASearch, FailsOrNeverEndsAsTheScenarioSays) {
    Simulation simulation(
        R"({"search": {"duration_ms": 10}, "broadcast": {"channels": [{"id": 1, "name": "One",
        "id_type": "ID_DVB_T", "programmes": [
        {"name": "First", "start_minutes": 0, "duration_minutes": 30},
        {"name": "Second", "start_minutes": 30, "duration_minutes": 30}]}]}})");
    auto& search = simulation.me.search();
    const auto id = search.addSearch(1);
    auto* results = search.results().find(*search.resultsOf(id));
    const auto runsAs = [&](const char* outcome) {
        simulation.world.setValue("/search/outcome", outcome);
        search.start(id);
        simulation.timers.pass(600'000);
        return std::make_tuple(results->complete, results->failed, results->programmes.size());
    };
    EXPECT_EQ(runsAs(R"("failed")"), std::make_tuple(false, true, 0U));
    EXPECT_EQ(runsAs(R"("found")"), std::make_tuple(true, false, 2U));
    EXPECT_EQ(runsAs(R"("never")"), std::make_tuple(false, false, 2U));
    EXPECT_THROW(simulation.world.setValue("/search/outcome", R"("maybe")"), ScenarioError);
}

}  // namespace

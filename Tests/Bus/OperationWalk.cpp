#include "Tests/Bus/OperationWalk.h"

#include <algorithm>
#include <map>

#include <gmock/gmock.h>

#include "Platform/Inc/PlatformLog.h"

namespace operation_walk {

namespace {

struct List {
    const char* wire;
    std::string rendered;
};

// NULs and bytes that are no text, records that are left out, none at all.
const std::map<std::string, List>& Lists() {
    using namespace std::string_literals;
    static const std::map<std::string, List> lists = {
        {"au", {"[3, 4294967295]", "3 4294967295 "}},
        {"aay", {"[[0x00, 0xff, 0x00], [], [0x41]]", "\x00\xff\x00||A|"s}},
        {"a(ub)", {"[(5, true), (1, false)]", "5 1,1 0,"}},
        {"a(uusu)", {"[(1, 0, 'a', 0)]", ""}},
        {"a(ssuuyis)",
         {"[('News', 'All of it', 1000, 1800, 0x0c, -7, 'crid://a'), ('', '', 0, 0, 0, 0, '')]",
          "News|All of it|crid://a|1000 1800 12 -7;|||0 0 0 0;"}},
        {"a(isbnqysbi)",
         {"[(0, 'H.264', true, -1, 65535, 0xff, 'eng', true, 178), (3, 'x', false, 0, 0, 0, '', false, 0), "
          "(2, 'DVB', true, 7, 8, 9, 'fin', true, 5), (1, 'AC3', false, 32767, 12, 1, 'fin', true, 6)]",
          "0, \"H.264\", true, -1, 65535, 255, 178;2, \"\", true, 7, 0, 9, \"fin\", true;"
          "1, \"AC3\", false, 32767, 0, 1, \"fin\", true, 6;"}},
    };
    return lists;
}

}  // namespace

int64_t Value::Integer() const {
    return type == "u"   ? 4000000000L + number
           : type == "q" ? 65000 + number
           : type == "y" ? 200 + number
                         : -number;
}

std::string Value::Plain() const {
    return type == "s" ? "%s%n " + std::to_string(number) : Rendered("");
}

std::string Value::Wire() const {
    if (const auto list = Lists().find(type); list != Lists().end())
        return list->second.wire;
    if (type == "y")
        return GCharPtr(g_strdup_printf("0x%02x", static_cast<unsigned>(Integer()))).get();
    return type == "s"   ? "'" + Plain() + "'"
           : type == "b" ? (flag ? "true" : "false")
           : type == "d" ? std::to_string(number) + ".5"
                         : std::to_string(Integer());
}

std::string Value::Rendered(const std::string& before) const {
    if (const auto list = Lists().find(type); list != Lists().end())
        return before + list->second.rendered;
    return type == "s"   ? Plain()
           : type == "b" ? std::to_string(flag)
           : type == "d" ? std::to_string(number + 0.5)
                         : std::to_string(Integer());
}

void Round::Expect(const std::string& held) {
    before.push_back(held);
    // Without a result on the wire it is whether there was an answer.
    expected.push_back(nextOut < out.size() ? out[nextOut++].Rendered(held) : "1");
}

std::string Render(const AVComponentVector& components) {
    std::string text;
    for (const auto& component : components)
        text += (component ? component->copy()->ParamString() : "none") + ";";
    return text;
}

std::string Render(const TOrderBy& orderBy) {
    std::string text;
    for (const auto& [type, ascending] : orderBy)
        text += std::to_string(type) + " " + std::to_string(ascending) + ",";
    return text;
}

std::string Render(const std::vector<std::string>& strings) {
    std::string text;
    for (const std::string& each : strings)
        text += each + "|";
    return text;
}

std::string Render(const std::unique_ptr<IProgrammeCollection>& programmes) {
    std::string text;
    std::string name, description, id;
    uint32_t start = 0, duration = 0;
    uint8_t rating = 0;
    int32_t event = 0;
    // Within the collection only.
    for (int i = -1; programmes && i <= programmes->NumberEntries(); ++i) {
        if (programmes->GetInfo(i, name, description, start, duration, rating, event, id))
            text += name + "|" + description + "|" + id + "|" + std::to_string(start) + " " +
                    std::to_string(duration) + " " + std::to_string(rating) + " " + std::to_string(event) +
                    ";";
    }
    return text;
}

}  // namespace operation_walk

using operation_walk::Round;
using operation_walk::Value;

namespace {

// What is in and out takes what the variable holds.
std::string Tuple(const std::vector<Value>& values, size_t given) {
    std::string text = "(";
    for (size_t i = 0; i < values.size(); ++i)
        text += (i > 0 ? ", " : "") + (i < given ? values[i].Wire() : "7");
    return text + (values.size() == 1 ? ",)" : ")");
}

std::string Filled(const std::string& trace, const std::vector<Value>& values) {
    std::string text;
    for (size_t i = 0; i < trace.size(); ++i) {
        const char kind = trace[i];
        if (kind != '%' && kind != '#' && kind != '@' && kind != '?') {
            text += kind;
            continue;
        }
        const Value& value = values.at(static_cast<size_t>(trace.at(++i) - '1'));
        text += kind == '?'   ? (value.flag ? "active_only" : "")
                : kind == '#' ? std::to_string(static_cast<int>(value.Integer()))
                : kind == '@' ? std::to_string(static_cast<long>(value.Integer()))
                              : value.Plain();
    }
    return text;
}

std::vector<Value> ValuesOf(const std::vector<std::string>& types, int first, unsigned round) {
    std::vector<Value> values;
    for (const std::string& type : types) {
        const int place = static_cast<int>(values.size());
        values.push_back({type, first + place, (((place + 1) >> round) & 1) != 0});
    }
    return values;
}

Round RoundOf(const std::vector<std::string>& in, const std::vector<std::string>& out, unsigned number) {
    Round round;
    round.in = ValuesOf(in, 11, number);
    round.out = ValuesOf(out, 31, number);
    return round;
}

}  // namespace

void OperationWalk::Walk(const operation_walk::Operation& operation, const std::string& name,
                         const std::string& trace, const std::string& method,
                         const std::string& failureClient) {
    SCOPED_TRACE(name);
    m_walked.insert(method);
    const auto [in, out] = m_service.TypesOf(method);
    const auto says = [this, &name](int priority, const std::string& client, const std::string& rest) {
        return std::ranges::count_if(LogCapture::Records(), [&](const LogCapture::Record& record) {
            return record.priority == priority &&
                   (m_client.empty() ? record.text.find("::" + name + "(") != std::string::npos &&
                                           record.text.ends_with(rest)
                                     : record.text == client + "::" + name + rest);
        });
    };
    for (unsigned number = 0; number < 5; ++number) {
        Round round = RoundOf(in, out, number);
        round.wantsOutputs = number < 4;
        m_service.Reply(method, Tuple(round.out, out.size()));
        LogCapture::Clear();
        operation(round);
        EXPECT_EQ(round.after, round.expected);
        EXPECT_THAT(m_service.TakeCalls(1),
                    testing::ElementsAre(method + " " + Tuple(round.in, round.nextIn)));
        EXPECT_EQ(says(kPlatformLogDebug, m_client, Filled(trace, round.in)), 1) << "trace line";
        EXPECT_EQ(LogCapture::Errors(), 0);
    }
    // Refused; answered with a value of another type, and with too many.
    for (const char* wrong : {"", "(<1>,)", "(uint16 1, 'x', <1>)"}) {
        const bool refuses = *wrong == '\0';
        Round round = RoundOf(in, out, 0);
        if (refuses)
            m_service.Fail(method, "not today");
        else
            m_service.ReplyOfAnyType(method, wrong);
        LogCapture::Clear();
        operation(round);
        EXPECT_EQ(round.after, round.before) << wrong;
        EXPECT_EQ(m_service.TakeCalls(1).size(), 1U);
        EXPECT_TRUE(WaitFor([] { return LogCapture::Errors() == 1; })) << wrong;
        const std::string refused =
            " failed \"GDBus.Error:org.freedesktop.DBus.Error.Failed: not today\" with error code 0";
        EXPECT_EQ(says(kPlatformLogError, failureClient, refused), refuses ? 1 : 0);
    }
}

std::set<std::string> OperationWalk::Missed() const {
    std::set<std::string> missed;
    for (const std::string& method : m_service.Methods()) {
        if (!m_walked.contains(method))
            missed.insert(method);
    }
    return missed;
}

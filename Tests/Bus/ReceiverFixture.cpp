#include "Tests/Bus/ReceiverFixture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "Host/Inc/ReceiverNames.h"

namespace ReceiverTest {

namespace {

using Host::GChars;
using Host::GErrorSlot;
using Host::GObjectHandle;
using Host::GVariantHandle;

constexpr char kControlInterface[] = "ReceiverControl";

std::vector<const char*> commandLine(const std::vector<std::string>& arguments) {
    std::vector<const char*> line = {HBBTV_RECEIVER};
    for (const auto& argument : arguments)
        line.push_back(argument.c_str());
    line.push_back(nullptr);
    return line;
}

GObjectHandle<GSubprocess> spawn(const std::vector<std::string>& arguments, GSubprocessFlags flags,
                                 const std::vector<std::pair<std::string, std::string>>& environment) {
    const GObjectHandle<GSubprocessLauncher> launcher(g_subprocess_launcher_new(flags));
    for (const auto& [name, value] : environment)
        g_subprocess_launcher_setenv(launcher.get(), name.c_str(), value.c_str(), TRUE);
    GErrorSlot error;
    GObjectHandle<GSubprocess> process(
        g_subprocess_launcher_spawnv(launcher.get(), commandLine(arguments).data(), error.out()));
    if (!process)
        ADD_FAILURE() << "cannot start the receiver: " << error.message();
    return process;
}

GVariantHandle parse(const std::string& arguments) {
    GErrorSlot error;
    GVariantHandle value(g_variant_parse(nullptr, arguments.c_str(), nullptr, nullptr, error.out()));
    if (!value)
        ADD_FAILURE() << "bad arguments " << arguments << ": " << error.message();
    return value;
}

Answer answerOf(GVariant* reply, const GErrorSlot& error) {
    Answer answer;
    answer.value.reset(reply);
    if (error) {
        answer.error = error.message();
        if (answer.error.starts_with("GDBus.Error:"))
            answer.error.erase(0, answer.error.find(": ") + 2);
    }
    return answer;
}

struct Target {
    std::string interface;
    std::string method;
    const char* path;
};

Target targetOf(const std::string& method) {
    const auto dot = method.find('.');
    const auto interface = method.substr(0, dot);
    return {Receiver::Names::Prefix + interface, method.substr(dot + 1),
            interface == kControlInterface ? Receiver::Names::ControlPath : Receiver::Names::ObjectPath};
}

// The labels of the clients by their names on the bus.
std::map<std::string, std::string>& labels() {
    static std::map<std::string, std::string> known;
    return known;
}

void replaceText(std::string& text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

std::string labelled(std::string text) {
    for (const auto& [name, label] : labels()) {
        for (const char* end : {"'", "\"", " "})
            replaceText(text, name + end, label + end);
    }
    return text;
}

std::string named(std::string text) {
    for (const auto& [name, label] : labels())
        replaceText(text, "'" + label + "'", "'" + name + "'");
    return text;
}

void onSignal(GDBusConnection*, const char*, const char*, const char*, const char* signal,
              GVariant* arguments, gpointer user) {
    if (std::string(signal) == "CallRecorded" || std::string(signal) == "RunningChannelChanged")
        return;
    const GChars text(g_variant_print(arguments, FALSE));
    static_cast<std::vector<std::string>*>(user)->push_back(std::string(signal) + labelled(text.get()));
}

}  // namespace

Ended runReceiver(const std::vector<std::string>& arguments,
                  const std::vector<std::pair<std::string, std::string>>& environment) {
    Ended ended;
    const auto flags =
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE);
    const auto process = spawn(arguments, flags, environment);
    if (!process)
        return ended;
    char* rawOutput = nullptr;
    char* rawErrors = nullptr;
    GErrorSlot error;
    EXPECT_TRUE(
        g_subprocess_communicate_utf8(process.get(), nullptr, nullptr, &rawOutput, &rawErrors, error.out()))
        << error.message();
    const GChars output(rawOutput);
    const GChars errors(rawErrors);
    ended.exitCode =
        g_subprocess_get_if_exited(process.get()) ? g_subprocess_get_exit_status(process.get()) : -1;
    ended.output = output ? output.get() : "";
    ended.errors = errors ? errors.get() : "";
    return ended;
}

std::string writeFile(const std::string& name, const std::string& content) {
    const auto path = std::filesystem::path(std::getenv("HOME")) / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
}

std::string Answer::text() const {
    if (!value)
        return "error: " + error;
    const GChars printed(g_variant_print(value.get(), FALSE));
    return labelled(printed.get());
}

std::string RunningReceiver::scenario() const {
    return HBBTV_DEFAULT_SCENARIO;
}

void RunningReceiver::SetUp() {
    m_process = spawn({"--scenario", scenario()}, G_SUBPROCESS_FLAGS_STDOUT_PIPE, {});
    ASSERT_TRUE(m_process);
    m_output.reset(g_data_input_stream_new(g_subprocess_get_stdout_pipe(m_process.get())));
    const GChars line(g_data_input_stream_read_line(m_output.get(), nullptr, nullptr, nullptr));
    ASSERT_STREQ(line.get(), "hbbtv-receiver: ready");

    join();
}

void RunningReceiver::TearDown() {
    leave();
    if (!m_process)
        return;
    g_subprocess_send_signal(m_process.get(), SIGTERM);
    const GChars more(m_output ? g_data_input_stream_read_line(m_output.get(), nullptr, nullptr, nullptr)
                               : nullptr);
    EXPECT_EQ(more, nullptr) << "the receiver wrote more than one line: " << more.get();
    ASSERT_TRUE(g_subprocess_wait(m_process.get(), nullptr, nullptr));
    ASSERT_TRUE(g_subprocess_get_if_exited(m_process.get()));
    EXPECT_EQ(g_subprocess_get_exit_status(m_process.get()), 0);
}

int RunningReceiver::pid() const {
    return std::atoi(g_subprocess_get_identifier(m_process.get()));
}

void RunningReceiver::kill() {
    g_subprocess_force_exit(m_process.get());
    ASSERT_TRUE(g_subprocess_wait(m_process.get(), nullptr, nullptr));
    m_process.reset();
}

void Client::join() {
    // A connection of its own, so that nothing of an earlier test arrives on it.
    GErrorSlot error;
    const GChars address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    ASSERT_TRUE(address);
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    m_connection.reset(
        g_dbus_connection_new_for_address_sync(address.get(), flags, nullptr, nullptr, error.out()));
    ASSERT_TRUE(m_connection);
    std::erase_if(labels(), [this](const auto& entry) { return entry.second == m_label; });
    labels()[g_dbus_connection_get_unique_name(m_connection.get())] = m_label;
    m_subscription = g_dbus_connection_signal_subscribe(m_connection.get(), Receiver::Names::Control, nullptr,
                                                        nullptr, nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                        onSignal, &m_signals, nullptr);
    // The bus knows of the subscription once it has answered a later call.
    ASSERT_TRUE(control("ClearCalls").value);
}

void Client::leave() {
    if (!m_connection)
        return;
    g_dbus_connection_signal_unsubscribe(m_connection.get(), m_subscription);
    g_dbus_connection_close_sync(m_connection.get(), nullptr, nullptr);
    m_connection.reset();
}

Answer Client::call(const std::string& method, const std::string& arguments) {
    const auto target = targetOf(method);
    const auto tuple = parse(named(arguments));
    GErrorSlot error;
    auto* reply =
        g_dbus_connection_call_sync(m_connection.get(), target.interface.c_str(), target.path,
                                    target.interface.c_str(), target.method.c_str(), tuple.get(), nullptr,
                                    G_DBUS_CALL_FLAGS_NO_AUTO_START, 20000, nullptr, error.out());
    return answerOf(reply, error);
}

Answer Client::control(const std::string& method, const std::string& arguments) {
    return call(std::string(kControlInterface) + "." + method, arguments);
}

std::vector<std::string> Client::calls() {
    std::vector<std::string> all;
    const auto answer = control("GetCalls");
    if (!answer.value) {
        ADD_FAILURE() << answer.error;
        return all;
    }
    const GVariantHandle entries(g_variant_get_child_value(answer.value.get(), 0));
    for (size_t i = 0; i < g_variant_n_children(entries.get()); ++i) {
        const char* method = nullptr;
        const char* arguments = nullptr;
        g_variant_get_child(entries.get(), i, "(&s&st)", &method, &arguments, nullptr);
        all.push_back(std::string(method) + arguments);
    }
    return all;
}

std::string Client::world(const std::string& pointer) {
    const auto answer = control("GetWorld", "('" + pointer + "',)");
    if (!answer.value)
        return answer.text();
    const char* json = nullptr;
    g_variant_get(answer.value.get(), "(&s)", &json);
    return labelled(json);
}

void Client::setWorld(const std::string& pointer, const std::string& value) {
    EXPECT_EQ(control("SetWorld", "('" + pointer + "', '" + value + "')").error, "");
}

std::shared_ptr<Answer> Client::callLater(const std::string& method, const std::string& arguments) {
    const auto target = targetOf(method);
    const auto answer = std::make_shared<Answer>();
    // The reply may come when the test has long gone.
    const auto finish = [](GObject* source, GAsyncResult* result, gpointer user) {
        const std::unique_ptr<std::shared_ptr<Answer>> kept(static_cast<std::shared_ptr<Answer>*>(user));
        GErrorSlot error;
        auto* reply = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, error.out());
        **kept = answerOf(reply, error);
    };
    g_dbus_connection_call(m_connection.get(), target.interface.c_str(), target.path,
                           target.interface.c_str(), target.method.c_str(), parse(named(arguments)).get(),
                           nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, 20000, nullptr, finish,
                           new std::shared_ptr<Answer>(answer));
    return answer;
}

testing::AssertionResult Client::hears(const std::vector<std::string>& expected) {
    if (WaitFor([&] { return m_signals.size() >= expected.size(); }) && m_signals == expected)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "heard " << testing::PrintToString(m_signals) << "\nand not "
                                       << testing::PrintToString(expected);
}

void Client::forget() {
    // A reply comes behind the signals that were emitted before it.
    (void)control("GetWorld", "('/keys/mask',)");
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    m_signals.clear();
}

}  // namespace ReceiverTest

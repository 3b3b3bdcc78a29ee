// hbbtv-receiver as a child of the test, and what the tests say to it and hear from it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/Inc/GHandles.h"
#include "Tests/Bus/BusFixture.h"

namespace ReceiverTest {

// A program that ran to its end.
struct Ended {
    int exitCode = -1;
    std::string output;
    std::string errors;
};

// Runs hbbtv-receiver and waits until it ends by itself.
[[nodiscard]] Ended runReceiver(const std::vector<std::string>& arguments,
                                const std::vector<std::pair<std::string, std::string>>& environment = {});

// A file of the test program's own folder.
[[nodiscard]] std::string writeFile(const std::string& name, const std::string& content);

struct Answer {
    Host::GVariantHandle value;  // null when the call failed
    std::string error;           // without the "GDBus.Error:...: " before it

    // The value as GVariant text, or the error after "error: ".
    [[nodiscard]] std::string text() const;
};

// A client of the bus, as each web process is one, that hears what the receiver says to it and to all. Its
// unique name reads as its label in what is heard, and stands for it in what is asked, as a text of its own:
// "'me'".
class Client {
 public:
    explicit Client(std::string label) : m_label(std::move(label)) {}
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() { leave(); }

    void join();
    void leave();

    // "Interface.Method" and the arguments as GVariant text, "(1, 'a')".
    Answer call(const std::string& method, const std::string& arguments = "()");
    Answer control(const std::string& method, const std::string& arguments = "()");
    // The text of the answer.
    std::string ask(const std::string& method, const std::string& arguments = "()") {
        return call(method, arguments).text();
    }
    // Changes the world; the value is JSON text.
    void setWorld(const std::string& pointer, const std::string& value);
    // What all clients have called so far, as "Interface.Method(arguments)".
    [[nodiscard]] std::vector<std::string> calls();
    // A value of the world as JSON text.
    [[nodiscard]] std::string world(const std::string& pointer);
    // Sends the call and does not wait; the answer is filled when the reply comes.
    [[nodiscard]] std::shared_ptr<Answer> callLater(const std::string& method,
                                                    const std::string& arguments = "()");

    // Everything heard, as "Signal(arguments)"; the call log's own signal is left out.
    [[nodiscard]] const std::vector<std::string>& signals() const { return m_signals; }
    // Waits until the signals heard since the last call of forget() are these, or fails with what came
    // instead.
    [[nodiscard]] testing::AssertionResult hears(const std::vector<std::string>& expected);
    void forget();

    [[nodiscard]] GDBusConnection* connection() const { return m_connection.get(); }

 private:
    const std::string m_label;
    Host::GObjectHandle<GDBusConnection> m_connection;
    unsigned m_subscription = 0;
    std::vector<std::string> m_signals;
};

// Starts the receiver in SetUp and ends it in TearDown, where it has to leave with exit code 0. The test is a
// client.
class RunningReceiver : public testing::Test, protected Client {
 protected:
    RunningReceiver() : Client("me") {}

    // The scenario of the tests that do not bring their own.
    [[nodiscard]] virtual std::string scenario() const;
    void SetUp() override;
    void TearDown() override;

    // Of the receiver's process.
    [[nodiscard]] int pid() const;
    // Ends the receiver in a way that it cannot hear of.
    void kill();

 private:
    Host::GObjectHandle<GSubprocess> m_process;
    Host::GObjectHandle<GDataInputStream> m_output;
};

}  // namespace ReceiverTest

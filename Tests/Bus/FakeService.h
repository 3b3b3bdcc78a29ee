// A service of the receiver, reduced to its wire: it answers what a test tells it to, and keeps what it was
// asked.
//
// It runs on a thread and a connection of its own, because the clients block the main thread.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "IPC/DBUS/Src/GLibHandles.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/LogCapture.h"

// The type of a tuple of these arguments, and the text of one of zeros with their types: false, 0, "" and
// empty arrays.
std::string TupleOf(GDBusArgInfo* const* arguments);
std::string ZerosOf(GDBusArgInfo* const* arguments);

class FakeService {
 public:
    // The interface's last word, as in "IJSChannelCache". Owns its name until it is stopped or destroyed.
    explicit FakeService(const std::string& interface);
    ~FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    // Dies, as far as anybody on the bus can tell; comes back as another process would.
    void Stop();
    void Start();

    // Owns its name and answers nothing, as a process that is stopped; goes on with all that was asked
    // meanwhile.
    void Hang();
    void GoOn();

    [[nodiscard]] std::vector<std::string> Methods() const;
    // Of a method: those of its arguments and those of its answer.
    [[nodiscard]] std::pair<std::vector<std::string>, std::vector<std::string>> TypesOf(
        const std::string& method) const;

    // What a method answers from now on. Values are written as GVariant text: "(uint32 7, true)". A method
    // that nothing was said about answers zeros.
    void Reply(const std::string& method, const std::string& values);
    // As a service that was built from another description does.
    void ReplyOfAnyType(const std::string& method, const std::string& values);
    void Fail(const std::string& method, const std::string& message);
    void Delay(const std::string& method, unsigned milliseconds);

    // For signals that the interface lacks the type must be in the text.
    void Emit(const std::string& signal, const std::string& values);
    // Whatever the interface says: the values bring their types.
    void EmitAnything(const std::string& signal, const std::string& values);
    // The interface's signals and the values of their arguments, zeros all.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> Signals() const;

    // The calls since the last time, as "Show (7,)"; those that nobody waited for may have to be waited for
    // here.
    [[nodiscard]] std::vector<std::string> TakeCalls(size_t atLeast = 0);

 private:
    struct Answer {
        std::string values{};
        bool ofAnyType = false;
        std::string failure{};
        unsigned delay = 0;
    };
    struct Unref {
        void operator()(GDBusNodeInfo* node) const { g_dbus_node_info_unref(node); }
    };

    static void OnCall(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar* method,
                       GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self);
    static void AnswerCall(GDBusMethodInvocation* invocation, const Answer& answer);

    std::string m_name;
    std::unique_ptr<GDBusNodeInfo, Unref> m_node;
    const GDBusInterfaceInfo* m_info;

    std::mutex m_mutex;
    std::map<std::string, Answer> m_answers;
    std::condition_variable m_called;
    std::vector<std::string> m_calls;
    std::mutex m_hold;
    std::unique_lock<std::mutex> m_hung{m_hold, std::defer_lock};

    GObjectPtr<GDBusConnection> m_connection;
    std::shared_ptr<GMainLoop> m_loop;
    std::thread m_thread;
};

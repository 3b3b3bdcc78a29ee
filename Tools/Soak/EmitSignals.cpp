// Has the simulated receiver emit signals, so many a second, by turns, over one connection, until it is
// ended.
//
//     hbbtv-emit-signals RATE SIGNAL TUPLE [SIGNAL TUPLE]...
//
// Once a second it prints how many it has asked for. A receiver that is away is no error: it may come back.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "Host/Inc/GHandles.h"
#include "Host/Inc/ReceiverNames.h"

namespace {

using namespace Host;

class Emitter {
 public:
    Emitter(GDBusConnection* connection, int rate,
            std::vector<std::pair<std::string, GVariantHandle>> signals)
        : m_connection(connection), m_rate(rate), m_signals(std::move(signals)) {}

    void tick() {
        const gint64 now = g_get_monotonic_time();
        m_due += static_cast<double>(now - std::exchange(m_last, now)) * m_rate / G_USEC_PER_SEC;
        // A program that was stopped for a while makes up for a second of it at most.
        for (m_due = std::min<double>(m_due, m_rate); m_due >= 1; --m_due)
            emit();
        if (now - m_printed >= G_USEC_PER_SEC) {
            m_printed = now;
            std::printf("%zu\n", m_count);
            std::fflush(stdout);
        }
    }

 private:
    void emit() {
        const auto& [signal, arguments] = m_signals[m_count++ % m_signals.size()];
        // Nobody waits for the answer.
        g_dbus_connection_call(m_connection, Receiver::Names::Control, Receiver::Names::ControlPath,
                               Receiver::Names::Control, "EmitSignal",
                               g_variant_new("(sv)", signal.c_str(), arguments.get()), nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
    }

    GDBusConnection* m_connection;
    int m_rate;
    std::vector<std::pair<std::string, GVariantHandle>> m_signals;
    size_t m_count = 0;
    double m_due = 0;
    gint64 m_last = g_get_monotonic_time();
    gint64 m_printed = 0;
};

}  // namespace

int main(int argc, char** argv) {
    const int rate = argc > 1 ? std::atoi(argv[1]) : 0;
    if (rate < 1 || argc < 4 || argc % 2 != 0) {
        std::fprintf(stderr, "usage: %s RATE SIGNAL TUPLE [SIGNAL TUPLE]...\n", argv[0]);
        return 2;
    }
    GErrorSlot error;
    std::vector<std::pair<std::string, GVariantHandle>> signals;
    for (int i = 2; i < argc; i += 2) {
        signals.emplace_back(argv[i], g_variant_parse(nullptr, argv[i + 1], nullptr, nullptr, error.out()));
        if (error) {
            std::fprintf(stderr, "%s: %s\n", argv[i + 1], error.message());
            return 2;
        }
    }
    const GObjectHandle<GDBusConnection> connection(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    if (!connection) {
        std::fprintf(stderr, "no session bus: %s\n", error.message());
        return 1;
    }
    Emitter emitter(connection.get(), rate, std::move(signals));
    const auto tick = [](gpointer self) -> gboolean {
        static_cast<Emitter*>(self)->tick();
        return G_SOURCE_CONTINUE;
    };
    const GSourceHandle timer(g_timeout_add(5, tick, &emitter));
    const GMainLoopHandle loop(g_main_loop_new(nullptr, FALSE));
    g_main_loop_run(loop.get());
}

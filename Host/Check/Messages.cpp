// What is answered by a signal of its own: DRM messages, stream events, files of the object carousel.
#include "Host/Check/Session.h"

namespace Check {

using namespace Host;

namespace {

// The reply of a CI Plus application: its command, 2, behind it the CA system, and the transaction.
bool isReplyTo(std::int32_t transaction, const Signal& signal) {
    constexpr size_t kTransactionAt = 3;
    constexpr unsigned char kReply = 2;
    if (!signal.is("SASMessage", "(ay)"))
        return false;
    const GVariantHandle data(g_variant_get_child_value(signal.values.get(), 0));
    gsize size = 0;
    const auto* bytes = static_cast<const unsigned char*>(g_variant_get_fixed_array(data.get(), &size, 1));
    std::uint32_t told = 0;
    for (size_t at = kTransactionAt;
         size >= kTransactionAt + sizeof told && at < kTransactionAt + sizeof told; ++at)
        told = told << 8U | bytes[at];
    return size >= kTransactionAt + sizeof told && bytes[0] == kReply &&
           told == static_cast<std::uint32_t>(transaction);
}

std::string drm(Session& session) {
    auto& middleware = session.middleware;
    const auto transaction = signedOf(middleware.ask(
        "IDAEBrowserAPI.SendDRMMessage", "'application/x-check', 'check', 'urn:dvb:casystemid:0'"));
    if (transaction == -1)
        throw Skipped("SendDRMMessage says that the message was not sent");
    const std::string answer =
        "PlayReadyResponse(" + std::to_string(static_cast<std::uint32_t>(transaction)) + ", ";
    const Signal* found = nullptr;
    middleware.waitFor([&] {
        for (const auto* signal : middleware.heard({"PlayReadyResponse(*", "SASMessage(*"})) {
            if (signal->text.starts_with(answer) || isReplyTo(transaction, *signal))
                found = signal;
        }
        return found != nullptr;
    });
    require(found != nullptr,
            "neither " + answer + "...) nor a reply by SASMessage came within " + middleware.limitText());
    if (found->is("PlayReadyResponse", "(uis)")) {
        constexpr int kLastCode = 6;
        const auto code = signedOf(found->values, 1);
        require(code >= 0 && code <= kLastCode, found->text + " has no result code from 0 to 6");
    }
    return found->text;
}

std::string streamEvent(Session& session) {
    auto& middleware = session.middleware;
    const std::string& event = session.options.streamEvent;
    if (event.empty())
        throw Skipped("--stream-event names one that fires by itself");
    const auto at = event.find('@');
    const std::string name = quoted(event.substr(0, at));
    const auto job = unsignedOf(
        middleware.ask("IDAEBrowserAPI.StreamEventSubscribe", quoted(event.substr(at + 1)) + ", " + name));
    require(job != 0, "StreamEventSubscribe refuses " + event);
    constexpr size_t kJob = 4;
    const Signal* found = nullptr;
    middleware.waitFor([&] {
        for (const auto* signal : middleware.heard({"StreamEvent(*"}))
            found = signal->is("StreamEvent", "(unsayu)") && unsignedOf(signal->values, kJob) == job ? signal
                                                                                                     : found;
        return found != nullptr;
    });
    const std::string told = found ? found->text : "";
    const bool isEnded =
        booleanOf(middleware.ask("IDAEBrowserAPI.StreamEventUnsubscribe", std::to_string(job)));
    require(!told.empty(),
            "no StreamEvent of " + std::to_string(job) + " came within " + middleware.limitText());
    require(told.starts_with("StreamEvent(0, ") && told.find(name) != std::string::npos,
            told + " has another status or name than was asked for");
    require(isEnded, "StreamEventUnsubscribe does not know " + std::to_string(job));
    require(!booleanOf(middleware.ask("IDAEBrowserAPI.StreamEventUnsubscribe", std::to_string(job))),
            "StreamEventUnsubscribe knows " + std::to_string(job) + " again, which was given up");
    return told;
}

struct File {
    bool isAccepted;
    bool isThere;
    size_t size;
};

File readFile(Session& session, std::uint32_t handle, const std::string& url) {
    constexpr size_t kLength = 3;
    constexpr size_t kStatus = 4;
    auto& middleware = session.middleware;
    if (!booleanOf(middleware.ask("DSMCC.FileRequest", std::to_string(handle) + ", " + quoted(url))))
        return {false, false, 0};
    const auto isMine = [&](const Signal& signal) {
        return signal.is("FileResponse", "(usayub)") && unsignedOf(signal.values) == handle &&
               stringOf(signal.values, 1) == url;
    };
    const Signal* found = nullptr;
    middleware.waitFor([&] {
        for (const auto* signal : middleware.heard({"FileResponse(*"}))
            found = isMine(*signal) ? signal : found;
        return found != nullptr;
    });
    require(found != nullptr, "no FileResponse of " + std::to_string(handle) + " and " + url +
                                  " came within " + middleware.limitText());
    const GVariantHandle data(g_variant_get_child_value(found->values.get(), 2));
    const size_t size = g_variant_get_size(data.get());
    require(size == unsignedOf(found->values, kLength),
            "FileResponse: data_length is " + std::to_string(unsignedOf(found->values, kLength)) +
                ", and there are " + std::to_string(size) + " bytes");
    return {true, booleanOf(found->values, kStatus), size};
}

std::string missingFile(Session& session) {
    const auto file = readFile(session, 0xF0000001U, "dvb://ffff.ffff.ffff/check/there-is-no-such-file");
    require(!file.isThere, "FileResponse has a file that is not there");
    return file.isAccepted ? "told by a false status" : "refused at once";
}

std::string presentFile(Session& session) {
    if (session.options.file.empty())
        throw Skipped("--file names one that is in the carousel");
    const auto file = readFile(session, 0xF0000002U, session.options.file);
    require(file.isAccepted, "FileRequest refuses " + session.options.file);
    require(file.isThere, "FileResponse says that " + session.options.file + " is not there");
    return std::to_string(file.size) + " bytes";
}

}  // namespace

void checkMessages(Session& session) {
    const std::vector<std::string> dae = {"IDAEBrowserAPI"};
    const std::vector<std::string> dsmcc = {"DSMCC"};
    session.check("Messages", "A DRM message is answered", dae, [&] { return drm(session); });
    session.check("Messages", "A stream event comes until given up", dae,
                  [&] { return streamEvent(session); });
    session.check("Object carousel", "A file that is not there is told", dsmcc,
                  [&] { return missingFile(session); });
    session.check("Object carousel", "A file comes whole", dsmcc, [&] { return presentFile(session); });
}

}  // namespace Check

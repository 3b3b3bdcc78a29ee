// The addresses dvb:... of pages and of what they load: files of the object carousel, which the bundle of the
// page's web process asks the receiver for.
#pragma once

#include <cstdint>

#include <webkit2/webkit2.h>

#include "Host/Inc/GCallbacks.h"
#include "Host/Shell/View/WebProcessChannel.h"

namespace Shell {

class CarouselScheme : Host::Pinned {
 public:
    // A file that has not come by the limit does not come any more.
    CarouselScheme(WebKitWebContext* context, const WebProcessChannel& channel, int limitSeconds);
    ~CarouselScheme();

 private:
    void onRequest(WebKitURISchemeRequest* request);
    static void onReply(GObject* connection, GAsyncResult* result, gpointer waiting);

    const WebProcessChannel& m_channel;
    int m_limitSeconds;
    // Every web process hears all of the receiver's responses, and so does another shell on this bus: no two
    // requests have the same handle.
    std::uint32_t m_nextHandle;
    Host::GObjectHandle<GCancellable> m_end;
};

}  // namespace Shell

// Whether there is anything that sound could come out of.
#pragma once

namespace Media {

// A look at the file system; GStreamer's own search for a device takes longer and complains on the way.
[[nodiscard]] bool hasSoundDevice();

}  // namespace Media

// What the receiver and the process that plays a film say to one another, and in which form.
#pragma once

#include "Host/Receiver/Media/MediaLink.h"

namespace Receiver::MediaWords {

// To the process. Commands are numbered from 1.
inline constexpr MediaWord Load{"load",
                                "(ssdui)"};  // address, user agent, speed, time limit in milliseconds, volume
inline constexpr MediaWord Begin{"begin", "()"};  // once: the answer to the first Components
inline constexpr MediaWord Play{"play", "d"};
inline constexpr MediaWord Seek{"seek", "u"};
inline constexpr MediaWord Present{"present", "an"};  // pids
inline constexpr MediaWord Volume{"volume", "i"};

// From the process, with the number of the last command that it has carried out.
inline constexpr MediaWord Ready{"ready", "()"};  // first, with a descriptor of the process
// When on the monotonic clock, the position then, the duration, how fast the position moves, the speed, and
// whether the medium can be had from anywhere. Milliseconds.
inline constexpr MediaWord Film{"film", "(xuuddb)"};
inline constexpr MediaWord State{"state", "(ii)"};  // and error
inline constexpr MediaWord Speed{"speed", "d"};
inline constexpr MediaWord Sought{"sought", "u"};
inline constexpr MediaWord Components{"components", "a(isnsi)"};  // type, encoding, pid, language, extra
inline constexpr MediaWord Picture{"picture", "b"};    // with the memory that holds it, or none any more
inline constexpr MediaWord Subtitle{"subtitle", "s"};  // its lines, or empty: none any more

}  // namespace Receiver::MediaWords

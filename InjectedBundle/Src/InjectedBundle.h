// What the bundle's host side offers to the rest of the program.
#pragma once

namespace OipfJavaScript {

// Asks the browser which view this page belongs to, and waits for the answer. False when there is none; then
// `viewId` is untouched.
[[nodiscard]] bool BundleGetWKViewFromWKManager(int& viewId);

}  // namespace OipfJavaScript

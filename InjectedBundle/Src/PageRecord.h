// What a page does with an object, and what the object does with the page's functions, for a recording.
// Looking at a value runs no page code.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <span>
#include <string>

#include "CSP/Inc/PCRecord.h"
#include "InjectedBundle/Src/CallArguments.h"

namespace OipfJavaScript::PageRecord {

[[nodiscard]] inline bool IsOn() {
    return HbbTVPlatform::PCRecord::IsOn();
}

// A value as scripts write it; of an object what it is.
[[nodiscard]] std::string TextOf(JSContextRef context, JSValueRef value);
[[nodiscard]] std::string TextOf(JSContextRef context, std::span<const JSValueRef> values,
                                 std::span<const char* const> names = {});

// `where` is the method's name behind "t_", with a capital.
void BeginCall(HbbTVPlatform::PCRecord& record, const char* id, const char* where, const CallArguments& call);

// What came of an entry: a result (null for none) or what was thrown.
void SetOutcome(HbbTVPlatform::PCRecord& record, JSContextRef context, JSValueRef result,
                JSValueRef exception);

}  // namespace OipfJavaScript::PageRecord

#include "InjectedBundle/Src/RuntimeObjects.h"

#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiException.h"
#include "JavaScript/Src/CExceptionImpl.h"
#include "JavaScript/Src/jiUtility.h"

namespace OipfJavaScript {

void Throw(const char* where, JSContextRef context, const std::string& name, const std::string& message,
           JSValueRef* exception) {
    *exception = jiUtility::JSObjectMakeException(where, context, name, message, exception);
}

std::optional<std::string> TextOfException(JSContextRef context, JSValueRef value) {
    jiException* const own = jiException::FromJS(nullptr, context, value);
    if (own == nullptr)
        return std::nullopt;
    return own->Implementation().GetName() + ": " + own->Implementation().GetDescription();
}

}  // namespace OipfJavaScript

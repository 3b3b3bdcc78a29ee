#include "JavaScript/Src/CExceptionImpl.h"

#include "InjectedBundle/Src/JSConversions.h"

namespace OipfJavaScript {

std::string CExceptionImpl::getCustomToString() const {
    return "[object Exception] : \"" + m_message + "\", \"" + m_description + "\"";
}

JSValueRef CExceptionImpl::customConvertToType(JSContextRef context, JSObjectRef /*object*/, JSType type,
                                               JSValueRef* /*exception*/) const {
    switch (type) {
        case kJSTypeBoolean:
            return JSValueMakeBoolean(context, true);
        case kJSTypeNumber:
        case kJSTypeString:
            return MakeString(context, getCustomToString());
        default:
            return nullptr;
    }
}

}  // namespace OipfJavaScript

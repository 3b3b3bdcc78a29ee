#include "JavaScript/Src/AttributeMap.h"

#include <cstddef>

#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"

namespace OipfJavaScript {

bool ReadAttributeMap(JSContextRef context, JSObjectRef object, AttributeMap& attributes,
                      JSValueRef* exception) {
    const JSPropertyNames names(context, object);
    for (size_t i = 0; i < names.Count(); ++i) {
        JSValueRef thrown = nullptr;
        const JSValueRef value = JSObjectGetProperty(context, object, names.At(i), &thrown);
        if (thrown != nullptr) {
            *exception = thrown;
            return false;
        }
        if (!ToUtf8(context, value, attributes[ToUtf8(names.At(i))], exception))
            return false;
    }
    return true;
}

}  // namespace OipfJavaScript

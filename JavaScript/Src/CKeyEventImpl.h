// The holder of the key codes has nothing but its constants.
#pragma once

#include "InjectedBundle/gen/js/CKeyEventBase.h"

namespace OipfJavaScript {

class CKeyEventImpl : public CKeyEventBase {};

}  // namespace OipfJavaScript

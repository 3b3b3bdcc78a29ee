#include "API/Src/IBroadcastPlayerCommon.h"

#include "API/Src/IPluginController.h"

const char* IBroadcastPlayerCommon::EventName(int32_t event) {
    switch (event) {
        case E_VBO_CHANNEL_CHANGE:
            return "E_VBO_CHANNEL_CHANGE";
        case E_VBO_STATE_CHANGE:
            return "E_VBO_STATE_CHANGE";
        case E_VBO_UPDATE_LAYOUT:
            return "E_VBO_UPDATE_LAYOUT";
        case E_VBO_DRM_RIGHTS_ERROR:
            return "E_VBO_DRM_RIGHTS_ERROR";
        case E_VBO_STREAM_EVENT:
            return "E_VBO_STREAM_EVENT";
        case E_VBO_PROGRAMMES_CHANGED:
            return "E_VBO_PROGRAMMES_CHANGED";
        case E_VBO_PARENTAL_RATING:
            return "E_VBO_PARENTAL_RATING";
        case E_VBO_GOING_DOWN:
            return "E_VBO_GOING_DOWN";
        case E_VBO_COMPONENT_SELECT:
            return "E_VBO_COMPONENT_SELECT";
        default:
            return "unknown event";
    }
}

// Owning handles of GStreamer's C types.
#pragma once

#include <memory>

#include <gst/gst.h>

#include "Host/Inc/GHandles.h"

namespace Media {

template <typename T>
using GstObjectHandle = std::unique_ptr<T, Host::GFree<&gst_object_unref>>;

using GstCapsHandle = std::unique_ptr<GstCaps, Host::GFree<&gst_caps_unref>>;
using GstTagListHandle = std::unique_ptr<GstTagList, Host::GFree<&gst_tag_list_unref>>;
using GstMessageHandle = std::unique_ptr<GstMessage, Host::GFree<&gst_message_unref>>;
using GstQueryHandle = std::unique_ptr<GstQuery, Host::GFree<&gst_query_unref>>;
using GstBufferHandle = std::unique_ptr<GstBuffer, Host::GFree<&gst_buffer_unref>>;
using GstSampleHandle = std::unique_ptr<GstSample, Host::GFree<&gst_sample_unref>>;

}  // namespace Media

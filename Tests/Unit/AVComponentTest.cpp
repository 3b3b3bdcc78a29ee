// Component records, and the lists that they come from.

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "IPC/DBUS/Src/AVComponentHandlerWK.h"
#include "IPC/DBUS/Src/GLibHandles.h"

namespace {

AVComponentVector Deserialise(const char* text) {
    const GVariantPtr array(g_variant_parse(G_VARIANT_TYPE("a(isbnqysbi)"), text, nullptr, nullptr, nullptr));
    EXPECT_NE(array, nullptr);
    AVComponentVector components;
    DeserialiseAVComponents(components, array.get());
    return components;
}

TEST(AComponentList, BecomesRecordsThatKeepWhatTheirKindHas) {
    const auto components = Deserialise(
        "[(0, 'H.264', true, -32768, 65535, 0xff, 'eng', true, 178),"
        " (1, 'AC3', false, 32767, 12, 0x01, 'fin', true, 6),"
        " (2, 'DVB', true, 5, 12, 0x02, '', true, 9)]");
    ASSERT_EQ(components.size(), 3U);
    EXPECT_EQ(components[0]->ParamString(), "0, \"H.264\", true, -32768, 65535, 255, 178");
    EXPECT_EQ(components[1]->ParamString(), "1, \"AC3\", false, 32767, 0, 1, \"fin\", true, 6");
    EXPECT_EQ(components[2]->ParamString(), "2, \"\", true, 5, 0, 2, \"\", true");
    EXPECT_NE(dynamic_cast<const IVideoComponent*>(components[0].get()), nullptr);
    EXPECT_NE(dynamic_cast<const IAudioComponent*>(components[1].get()), nullptr);
    EXPECT_NE(dynamic_cast<const ISbtComponent*>(components[2].get()), nullptr);
}

TEST(AComponentList, LeavesOutUnknownTypesAndKeepsWhatWasThere) {
    const auto components = Deserialise(
        "[(3, '', false, 0, 0, 0, '', false, 0), (-1, '', false, 0, 0, 0, '', false, 0),"
        " (1, '', false, 1, 0, 0, '', false, 0)]");
    ASSERT_EQ(components.size(), 1U);

    AVComponentVector more;
    more.push_back(components[0]->copy());
    DeserialiseAVComponents(more, nullptr);
    ASSERT_EQ(more.size(), 1U);
    EXPECT_NE(more[0], components[0]);
    EXPECT_EQ(more[0]->ParamString(), components[0]->ParamString());
    EXPECT_EQ(Deserialise("[]").size(), 0U);
}

}  // namespace

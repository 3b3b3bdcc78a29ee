// Records of the elementary streams (video, audio, subtitles) of what a player presents.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

enum EComponentType : int {
    E_COMPONENT_TYPE_VIDEO = 0,
    E_COMPONENT_TYPE_AUDIO = 1,
    E_COMPONENT_TYPE_SUBTITLE = 2,
};

class IAVComponent {
 public:
    virtual ~IAVComponent() = default;

    [[nodiscard]] virtual std::unique_ptr<IAVComponent> copy() const = 0;
    // The values on one line, for the log.
    [[nodiscard]] virtual std::string ParamString() const;

    int type;
    std::string encoding;
    bool encrypted = false;
    int16_t pid = 0;
    uint16_t caSid = 0;
    uint8_t componentTag = 0;

 protected:
    explicit IAVComponent(int componentType) : type(componentType) {}
    IAVComponent(const IAVComponent&) = default;
    IAVComponent& operator=(const IAVComponent&) = default;
};

using AVComponentVector = std::vector<std::unique_ptr<IAVComponent>>;

class IVideoComponent final : public IAVComponent {
 public:
    IVideoComponent() : IAVComponent(E_COMPONENT_TYPE_VIDEO) {}
    [[nodiscard]] std::unique_ptr<IAVComponent> copy() const override;
    [[nodiscard]] std::string ParamString() const override;

    int32_t aspectRatio = 0;  // in hundredths: 178 is 16:9
};

class IAudioComponent final : public IAVComponent {
 public:
    IAudioComponent() : IAVComponent(E_COMPONENT_TYPE_AUDIO) {}
    [[nodiscard]] std::unique_ptr<IAVComponent> copy() const override;
    [[nodiscard]] std::string ParamString() const override;

    std::string language;
    bool hearingImpaired = false;
    int32_t audioChannels = 0;
};

class ISbtComponent final : public IAVComponent {
 public:
    ISbtComponent() : IAVComponent(E_COMPONENT_TYPE_SUBTITLE) {}
    [[nodiscard]] std::unique_ptr<IAVComponent> copy() const override;
    [[nodiscard]] std::string ParamString() const override;

    std::string language;
    bool hearingImpaired = false;
};

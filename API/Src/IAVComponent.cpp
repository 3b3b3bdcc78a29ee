#include "API/Src/IAVComponent.h"

namespace {

std::string Text(const std::string& value) {
    return '"' + value + '"';
}
std::string Text(bool value) {
    return value ? "true" : "false";
}
std::string Text(int value) {
    return std::to_string(value);
}

}  // namespace

std::string IAVComponent::ParamString() const {
    return Text(type) + ", " + Text(encoding) + ", " + Text(encrypted) + ", " + Text(int{pid}) + ", " +
           Text(int{caSid}) + ", " + Text(int{componentTag});
}

std::unique_ptr<IAVComponent> IVideoComponent::copy() const {
    return std::make_unique<IVideoComponent>(*this);
}

std::string IVideoComponent::ParamString() const {
    return IAVComponent::ParamString() + ", " + Text(aspectRatio);
}

std::unique_ptr<IAVComponent> IAudioComponent::copy() const {
    return std::make_unique<IAudioComponent>(*this);
}

std::string IAudioComponent::ParamString() const {
    return IAVComponent::ParamString() + ", " + Text(language) + ", " + Text(hearingImpaired) + ", " +
           Text(audioChannels);
}

std::unique_ptr<IAVComponent> ISbtComponent::copy() const {
    return std::make_unique<ISbtComponent>(*this);
}

std::string ISbtComponent::ParamString() const {
    return IAVComponent::ParamString() + ", " + Text(language) + ", " + Text(hearingImpaired);
}

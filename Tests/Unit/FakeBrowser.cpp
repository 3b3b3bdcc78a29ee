#include "Tests/Unit/FakeBrowser.h"

#include <algorithm>
#include <cstring>

#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"
#include "Platform/Inc/JSCPrivate.h"

using OipfJavaScript::JSStringHandle;
using OipfJavaScript::ToUtf8;

// What the engine holds from its own heap is not seen by the leak check, which knows the C heap only.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();  // NOLINT
const char* __lsan_default_suppressions() {
    return "leak:libjavascriptcoregtk\n";
}  // NOLINT

namespace {

FakeBrowser s_browser;
WKBundleClientV1 s_client{};

// All pages of a web process share one engine.
JSContextGroupRef Engine() {
    static JSContextGroupRef s_engine = JSContextGroupCreate();
    return s_engine;
}

FakePage& PageOf(WKBundlePageRef page) {
    return *reinterpret_cast<FakePage*>(const_cast<OpaqueWKBundlePage*>(page));
}
FakeFrame& FrameOf(WKBundleFrameRef frame) {
    return *reinterpret_cast<FakeFrame*>(const_cast<OpaqueWKBundleFrame*>(frame));
}
WKBundlePageRef RefOf(FakePage& page) {
    return reinterpret_cast<WKBundlePageRef>(&page);
}
WKBundleFrameRef RefOf(FakeFrame& frame) {
    return reinterpret_cast<WKBundleFrameRef>(&frame);
}
WKBundleRef Bundle() {
    return reinterpret_cast<WKBundleRef>(&s_browser);
}

std::string* StringOf(WKTypeRef string) {
    return static_cast<std::string*>(const_cast<void*>(string));
}

WKStringRef NewString(const std::string& text) {
    ++s_browser.liveStrings;
    return reinterpret_cast<WKStringRef>(new std::string(text));
}

// The global function "collect" of every frame.
JSValueRef Collect(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[], JSValueRef*) {
    JSSynchronousGarbageCollectForDebugging(context);
    return JSValueMakeUndefined(context);
}

const WKBundlePageLoaderClientV6& LoaderOf(const FakePage& page) {
    return *reinterpret_cast<const WKBundlePageLoaderClientV6*>(page.loaderClient);
}

}  // namespace

FakeBrowser& FakeBrowser::Get() {
    if (s_client.didCreatePage == nullptr) {
        WKBundleInitialize(Bundle(), nullptr);
        s_client.didInitializePageGroup(Bundle(), reinterpret_cast<WKBundlePageGroupRef>(&s_client), nullptr);
    }
    return s_browser;
}

FakeFrame::FakeFrame(FakePage& owner, bool main) : page(owner), isMain(main) {
    context = JSGlobalContextCreateInGroup(Engine(), nullptr);
}

FakeFrame::~FakeFrame() {
    JSGlobalContextRelease(context);
}

void FakeFrame::Navigate() {
    JSGlobalContextRelease(context);
    context = JSGlobalContextCreateInGroup(Engine(), nullptr);
    SetGlobal("collect", JSObjectMakeFunctionWithCallback(context, nullptr, &Collect));
    Eval(R"(var reported = []; function reportError(error) { reported.push(error); }
        class DOMParser { parseFromString(text, type) { return {text, type}; } })");
    LoaderOf(page).didClearWindowObjectForFrame(RefOf(page), RefOf(*this), nullptr, nullptr);
}

void FakeFrame::Remove() {
    LoaderOf(page).didRemoveFrameFromHierarchy(RefOf(page), RefOf(*this), nullptr, nullptr);
}

std::string FakeFrame::Eval(const std::string& script) {
    JSValueRef exception = nullptr;
    JSValueRef result = JSEvaluateScript(context, JSStringHandle(script.c_str()).Get(), nullptr,
                                         JSStringHandle("http://tv/page.js").Get(), 1, &exception);
    std::string text;
    if (!ToUtf8(context, exception != nullptr ? exception : result, text, nullptr))
        text = "(no text)";
    return exception != nullptr ? "throws: " + text : text;
}

std::string FakeFrame::Value(const std::string& expression) {
    return Eval("(v => v === null ? 'null' : v === undefined ? 'undefined' : typeof v + ' ' + v)(" +
                expression + ")");
}

std::string FakeFrame::Thrown(const std::string& statement) {
    return Eval("try { " + statement +
                "; 'nothing' } catch (e) { "
                "[...new Set([e.name, e.message, e.description])].join('|') }");
}

void FakeFrame::CollectGarbage() {
    // The collector takes words that are left on the stack for references: leave others there.
    Eval("(function deep(n) { return n && [deep(n - 1)]; })(100)");
    JSSynchronousGarbageCollectForDebugging(context);
}

void FakeFrame::SetGlobal(const char* name, JSValueRef value) {
    JSObjectSetProperty(context, JSContextGetGlobalObject(context), JSStringHandle(name).Get(), value,
                        kJSPropertyAttributeNone, nullptr);
}

void FakeFrame::Share(const char* name, FakeFrame& from) {
    SetGlobal(name, JSEvaluateScript(from.context, JSStringHandle(name).Get(), nullptr, nullptr, 1, nullptr));
}

FakePage::FakePage() : main(*this, true) {
    FakeBrowser::Get();
    s_client.didCreatePage(Bundle(), RefOf(*this), nullptr);
    main.Navigate();
}

// What a closed page leaves behind hears no events of the pages after it.
FakePage::~FakePage() {
    main.Navigate();
}

FakeFrame& FakePage::AddFrame() {
    children.push_back(std::make_unique<FakeFrame>(*this, false));
    children.back()->Navigate();
    return *children.back();
}

void FakePage::StartLoad(FakeFrame& frame) {
    LoaderOf(*this).didStartProvisionalLoadForFrame(RefOf(*this), RefOf(frame), nullptr, nullptr);
}

// The fourteen functions.

void WKRelease(WKTypeRef type) {
    --s_browser.liveStrings;
    delete StringOf(type);
}
WKStringRef WKStringCreateWithUTF8CString(const char* text) {
    return NewString(text);
}
size_t WKStringGetMaximumUTF8CStringSize(WKStringRef string) {
    return StringOf(string)->size() * 3 + 1;
}
size_t WKStringGetUTF8CString(WKStringRef string, char* buffer, size_t size) {
    const std::string& text = *StringOf(string);
    const size_t length = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return length + 1;
}
void WKBundleSetClient(WKBundleRef, WKBundleClientBase* client) {
    s_client = *reinterpret_cast<WKBundleClientV1*>(client);
}
void WKBundlePageSetUIClient(WKBundlePageRef page, WKBundlePageUIClientBase* client) {
    static WKBundlePageUIClientV2 s_copy;
    s_copy = *reinterpret_cast<WKBundlePageUIClientV2*>(client);
    PageOf(page).uiClient = &s_copy.base;
}
void WKBundlePageSetPageLoaderClient(WKBundlePageRef page, WKBundlePageLoaderClientBase* client) {
    static WKBundlePageLoaderClientV6 s_copy;
    s_copy = *reinterpret_cast<WKBundlePageLoaderClientV6*>(client);
    PageOf(page).loaderClient = &s_copy.base;
}
void WKBundleAddUserScript(WKBundleRef, WKBundlePageGroupRef, WKBundleScriptWorldRef, WKStringRef source,
                           WKURLRef url, WKArrayRef whitelist, WKArrayRef blacklist,
                           WKUserScriptInjectionTime time, WKUserContentInjectedFrames frames) {
    const bool everyUrl = url == nullptr && whitelist == nullptr && blacklist == nullptr;
    s_browser.userScripts.push_back({*StringOf(source), time, frames, everyUrl});
}
WKBundleScriptWorldRef WKBundleScriptWorldNormalWorld() {
    return nullptr;
}
void WKBundlePostMessage(WKBundleRef, WKStringRef name, WKTypeRef body) {
    s_browser.messages.emplace_back(*StringOf(name), *StringOf(body));
}
void WKBundlePostSynchronousMessage(WKBundleRef, WKStringRef name, WKTypeRef body, WKTypeRef* reply) {
    s_browser.messages.emplace_back(*StringOf(name), body != nullptr ? *StringOf(body) : "null");
    *reply = s_browser.viewId ? NewString(*s_browser.viewId) : nullptr;
}
WKBundleFrameRef WKBundlePageGetMainFrame(WKBundlePageRef page) {
    return RefOf(PageOf(page).main);
}
JSGlobalContextRef WKBundleFrameGetJavaScriptContext(WKBundleFrameRef frame) {
    return FrameOf(frame).context;
}
bool WKBundleFrameIsMainFrame(WKBundleFrameRef frame) {
    return FrameOf(frame).isMain;
}

// The web process as far as the bundle sees it: pages and frames on plain script contexts, and a record of
// what the bundle asked of the browser.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Inc/WKBundle.h"

class FakeFrame {
 public:
    FakeFrame(class FakePage& page, bool isMain);
    FakeFrame(const FakeFrame&) = delete;
    FakeFrame& operator=(const FakeFrame&) = delete;
    ~FakeFrame();

    // Replaces the document: a new global object, announced to the bundle as a browser does.
    void Navigate();
    // Takes the frame out of its page; its scripts stay callable, as in a browser.
    void Remove();

    // The script's result as text; "throws: ..." when it throws.
    std::string Eval(const std::string& script);
    // The same for an expression, with its type: "number 3", "string abc", "null", "undefined".
    std::string Value(const std::string& expression);
    // The name, message and description of what a statement throws, each text once, or "nothing".
    std::string Thrown(const std::string& statement);
    void CollectGarbage();
    void SetGlobal(const char* name, JSValueRef value);
    // Gives the frame what another frame of the page has under this name.
    void Share(const char* name, FakeFrame& from);

    FakePage& page;
    const bool isMain;
    JSGlobalContextRef context = nullptr;
};

class FakePage {
 public:
    FakePage();
    ~FakePage();
    FakeFrame& AddFrame();
    // What a browser does when the main frame starts to load another document.
    void StartLoad(FakeFrame& frame);

    FakeFrame main;
    std::vector<std::unique_ptr<FakeFrame>> children;

    const WKBundlePageUIClientBase* uiClient = nullptr;
    const WKBundlePageLoaderClientBase* loaderClient = nullptr;
};

// A page in the words of its test. As a base it stands behind the services that it asks, so that it ends
// before them.
class TestedPage {
 protected:
    static constexpr const char* kBadArguments = "SecurityError|Argument count or the argument types are bad";

    std::string Eval(const std::string& script) { return page.main.Eval(script); }
    std::string Value(const std::string& expression) { return page.main.Value(expression); }
    std::string Thrown(const std::string& statement) { return page.main.Thrown(statement); }
    // Expects of all these expressions that they have the value.
    void ExpectAll(const std::string& value, std::initializer_list<const char*> expressions) {
        for (const char* expression : expressions)
            EXPECT_EQ(Value(expression), value) << expression;
    }
    // What the page has logged since the last time.
    std::string Log() { return Eval("log.splice(0).join()"); }

    FakePage page;
};

struct FakeBrowser {
    struct UserScript {
        std::string source;
        WKUserScriptInjectionTime time;
        WKUserContentInjectedFrames frames;
        bool forEveryUrl;
    };

    // Starts the bundle, once a process.
    static FakeBrowser& Get();

    std::optional<std::string> viewId = "7";  // none: the browser gives no reply
    std::vector<std::pair<std::string, std::string>> messages;
    std::vector<UserScript> userScripts;
    int liveStrings = 0;
};

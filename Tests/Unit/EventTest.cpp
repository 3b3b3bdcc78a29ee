// Handlers and listeners as a page meets them, and how long they keep what alive.

#include <gtest/gtest.h>

#include <string>

#include "API/Src/IPluginController.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingObject.h"
#include "Tests/Bus/LogCapture.h"
#include "Tests/Unit/FakeBrowser.h"

namespace OipfJavaScript {
namespace {

void Fire(int32_t code) {
    CDAEBrowserAPIWK::GetInstance()->SendEventToPlugins(event_t::Plain(code, 0));
}
void LowMemory() {
    Fire(E_APP_LOW_MEMORY);
}
void LoadError() {
    Fire(E_APP_LOAD_ERROR);
}

class AnEventTarget : public testing::Test {
 protected:
    AnEventTarget() {
        page.main.Eval("var log = []; var manager = PrivateObjectFactory.createApplicationManagerObject();");
    }
    std::string Eval(const std::string& script) { return page.main.Eval(script); }
    std::string Log() { return Eval("log.splice(0).join()"); }

    FakePage page;
};

TEST_F(AnEventTarget, CallsTheHandlerFirstAndThenEachListenerWithAnEvent) {
    Eval(R"(
        manager.addEventListener('ApplicationLoadError', function(e) {
            log.push(e.type, e.target === manager && e.currentTarget === manager && e.srcElement === manager,
                     this === manager, typeof e.app, arguments.length, manager.app === e.app, manager.event === e,
                     [e.eventPhase, e.bubbles, e.cancelable, e.cancelBubble, e.defaultPrevented].join(' '),
                     Math.abs(e.timeStamp - Date.now()) < 5000);
            e.preventDefault(); e.stopPropagation(); e.stopImmediatePropagation(); e.initEvent('x', true, true);
            e.app = 1; log.push(typeof e.app);
        }, false);
        manager.onApplicationLoadError = function(app) { log.push('handler', typeof app.show, arguments.length); };)");
    LoadError();
    EXPECT_EQ(Log(),
              "handler,function,1,ApplicationLoadError,true,true,object,1,true,true,0 false false false "
              "false,true,object");
    LowMemory();
    EXPECT_EQ(Log(), "");
}

TEST_F(AnEventTarget, RefreshesTheArgumentsThatItCarriesItself) {
    Eval("manager.addEventListener('ApplicationLoadError', function(e) { log.push(e); })");
    LoadError();
    LoadError();
    EXPECT_EQ(Eval("log.length === 2 && log[0] !== log[1] && log[0].app !== log[1].app && manager.event === "
                   "log[1] && "
                   "manager.app === log[1].app"),
              "true");
}

TEST_F(AnEventTarget, SetsNothingOnItselfForAHandlerAlone) {
    Eval("manager.onApplicationLoadError = function() { log.push(1); }");
    LoadError();
    EXPECT_EQ(Eval("log.length + ' ' + ('app' in manager) + ' ' + ('event' in manager)"), "1 false false");
}

TEST_F(AnEventTarget, KeepsOneHandlerAndEachListenerOnce) {
    Eval(R"(
        function f() { log.push('f'); } function g() { log.push('g'); }
        manager.onLowMemory = g; manager.onLowMemory = f;
        log.push(manager.onLowMemory === f);
        manager.addEventListener('LowMemory', g); manager.addEventListener('LowMemory', g, true);)");
    LowMemory();
    EXPECT_EQ(Log(), "true,f,g");
    Eval(
        "manager.addEventListener('ApplicationLoadError', g); "
        "manager.removeEventListener('ApplicationLoadError', g)");
    LowMemory();
    EXPECT_EQ(Log(), "f") << "a listener goes from every event of its object";
    for (const char* value : {"null", "undefined", "7", "'f'", "{}"}) {
        Eval("manager.onLowMemory = f; manager.onLowMemory = " + std::string(value));
        EXPECT_EQ(page.main.Value("manager.onLowMemory"), "null") << value;
    }
    LowMemory();
    EXPECT_EQ(Log(), "");
}

TEST_F(AnEventTarget, TakesTwoOrThreeArgumentsForAListener) {
    EXPECT_EQ(page.main.Value("manager.addEventListener('LowMemory', null)"), "undefined");
    EXPECT_EQ(page.main.Value("manager.removeEventListener('LowMemory', function() {}, {capture: true})"),
              "undefined");
    for (const std::string arguments : {"'LowMemory'", "1, log.push", "'LowMemory', log.push, false, 1"})
        EXPECT_EQ(Eval("try { manager.addEventListener(" + arguments + ") } catch (e) { e.description }"),
                  "Argument count or the argument types are bad");
    LowMemory();
}

TEST_F(AnEventTarget, TellsTheLogAndTheWindowOfTheListenerWhatItsListenersThrow) {
    FakeFrame& child = page.AddFrame();
    child.Share("manager", page.main);
    child.Share("log", page.main);
    Eval(R"(reportError = null;
        manager.onLowMemory = function() { log.push(1); throw new TypeError('mine'); };
        manager.addEventListener('LowMemory', function() { log.push(2); throw {toString() { throw 3; }}; });
        )");
    child.Eval("manager.addEventListener('LowMemory', function() { log.push(3); throw 'of the child'; });");
    LogCapture::Clear();
    LowMemory();
    EXPECT_EQ(Eval("log.splice(0).sort().join()"), "1,2,3");
    EXPECT_EQ(Eval("reported.length + ' ' + reported[0]"), "2 TypeError: mine")
        << "to the one it had at the start";
    EXPECT_EQ(child.Eval("reported.join()"), "of the child");
    EXPECT_EQ(LogCapture::Count(
                  "OipfApplicationManager(LowMemory) - failed to call DOM level 1 call-back function."),
              1);
    EXPECT_EQ(LogCapture::Count("OipfApplicationManager(LowMemory) - TypeError: mine (http://tv/page.js:2)"),
              1);
    EXPECT_EQ(LogCapture::Count("OipfApplicationManager(LowMemory) - of the child"), 1);
    EXPECT_EQ(LogCapture::Count("OipfApplicationManager(LowMemory) - (no text)"), 1);
    EXPECT_EQ(LogCapture::Errors(), 6);
}

TEST_F(AnEventTarget, IsDeafToWhatThePageDidToItsBuiltIns) {
    // Listeners of frames whose prototypes have other names hear first and last.
    const auto listen = [&](FakeFrame& frame) {
        frame.Share("manager", page.main);
        frame.Eval(R"(var right = 0; manager.addEventListener('ApplicationLoadError', e => {
            right += e instanceof Object && typeof e.app.show === 'function';
        }))");
    };
    FakeFrame &first = page.AddFrame(), &last = page.AddFrame();
    listen(first);
    Eval(R"(var right = 0, events = new Set();
        const mine = {get() { return 'mine'; }, set() { throw 'mine'; }, configurable: true};
        for (let i = 0; i < 300; ++i) Object.defineProperty(Array.prototype, i, mine);
        Object.defineProperty(Object.prototype, 'app', mine);
        Object.defineProperty(Object.getPrototypeOf(manager), 'event', mine);
        manager.onApplicationLoadError = function() {
            collect();
            for (let i = 0; i < 2000; ++i) manager.getOwnerApplication();
        };
        for (let i = 0; i < 200; ++i) {
            manager.addEventListener('ApplicationLoadError', e => {
                right += e.type === 'ApplicationLoadError' && e.target === manager && !events.has(e) &&
                         typeof e.app.show === 'function' && manager.app === e.app && e instanceof Object &&
                         manager instanceof Object;
                events.add(e);
            });
        })");
    listen(last);
    for (int i = 0; i < 2; ++i)
        LoadError();
    EXPECT_EQ(Eval("right + ' ' + manager.event.type"), "400 ApplicationLoadError");
    EXPECT_EQ(first.Eval("right") + last.Eval("right"), "22");
}

TEST_F(AnEventTarget, DeliversToTheListenersThatItHadAtTheStart) {
    Eval(R"(
        function removed() { log.push('removed'); }
        function added() { log.push('added'); }
        manager.onLowMemory = function() {
            manager.removeEventListener('LowMemory', removed);
            manager.addEventListener('LowMemory', added);
            manager.onLowMemory = null;
        };
        manager.addEventListener('LowMemory', removed);)");
    LowMemory();
    EXPECT_EQ(Log(), "removed");
    LowMemory();
    EXPECT_EQ(Log(), "added");
}

TEST_F(AnEventTarget, SurvivesAHandlerThatDropsAndMakesObjectsWhileItIsCalled) {
    Eval(R"(
        function make() {
            var another = PrivateObjectFactory.createApplicationManagerObject();
            another.onLowMemory = function() {
                log.push('x');
                another.onLowMemory = null;  // from here on nothing holds it
                another = null;
                for (var i = 0; i < 50; i++) make();
                collect();
                log.push('y');
            };
        }
        make(); manager = null;)");
    LowMemory();
    EXPECT_EQ(Log(), "x,y");
    page.main.CollectGarbage();
    LowMemory();
    EXPECT_EQ(Eval("log.length"), "100");
}

TEST_F(AnEventTarget, IsPinnedByAHandlerAndOnlyByAHandler) {
    const size_t before = BindingObject::AliveCount();
    Eval(R"((function() {
            for (var i = 0; i < 40; i++) PrivateObjectFactory.createApplicationManagerObject().onLowMemory;
            PrivateObjectFactory.createApplicationManagerObject().onLowMemory = function() { log.push('pinned'); };
        })())");
    page.main.CollectGarbage();
    EXPECT_LT(BindingObject::AliveCount(), before + 10) << "what has no handler is garbage";
    LowMemory();
    EXPECT_EQ(Log(), "pinned");
}

TEST_F(AnEventTarget, IsKeptByAnEventThatAPageKeeps) {
    Eval(R"(var kept;
        manager.addEventListener('LowMemory', function once(e) { kept = e; manager.removeEventListener('', once); });)");
    LowMemory();
    Eval("manager = null");
    page.main.CollectGarbage();
    EXPECT_EQ(Eval("typeof kept.target.getOwnerApplication"), "function");
}

TEST_F(AnEventTarget, LosesTheHandlersOfAFrameThatGoesAndNoOthers) {
    static FakeFrame* s_leaving;
    for (const auto go : {&FakeFrame::Navigate, &FakeFrame::Remove}) {
        FakeFrame& child = page.AddFrame();
        s_leaving = &child;
        // Each frame has handlers on the other's object, whoever touched it first.
        child.Eval("var theirs = PrivateObjectFactory.createApplicationManagerObject()");
        child.Share("manager", page.main);
        child.Share("log", page.main);
        page.main.Share("theirs", child);
        Eval("theirs.onLowMemory = () => log.push('main on theirs');");
        child.Eval(R"([manager, theirs].forEach((each, i) => {
            each.addEventListener('LowMemory', () => log.push('child on ' + i));
            each.onApplicationLoadError = () => log.push('child');
        });)");
        Eval("manager.onLowMemory = () => log.push('main');");
        child.Eval("var late = () => log.push('late')");
        page.main.Share("late", child);
        LowMemory();
        LoadError();
        EXPECT_EQ(Eval("log.splice(0).sort().join()"),
                  "child,child,child on 0,child on 1,main,main on theirs");
        page.main.SetGlobal(
            "go", JSObjectMakeFunctionWithCallback(page.main.context, nullptr,
                                                   [](JSContextRef context, JSObjectRef, JSObjectRef, size_t,
                                                      const JSValueRef[], JSValueRef*) -> JSValueRef {
                                                       s_leaving->Remove();
                                                       return JSValueMakeUndefined(context);
                                                   }));
        if (go == &FakeFrame::Remove)
            // Of the two objects either may be the first that hears.
            Eval(R"(var gone = false; [manager, theirs].forEach(each => {
                const before = each.onLowMemory;
                each.onLowMemory = () => { gone = gone || (go(), true); before(); };
            }))");
        else
            child.Navigate();
        LowMemory();
        LoadError();
        EXPECT_EQ(Eval("log.splice(0).sort().join()"), "main,main on theirs")
            << "even in the dispatch that removes it";
        Eval("manager.addEventListener('LowMemory', late); theirs.onLowMemory = late;");
        LowMemory();
        EXPECT_EQ(Log(), "main") << "a script that runs on gives no handlers any more";
    }

    FakePage other;
    other.main.Eval(
        "var log = []; PrivateObjectFactory.createApplicationManagerObject().onLowMemory = function() "
        "{ log.push('other'); }");
    FakeFrame& child = page.AddFrame();
    child.Eval(
        "var log = []; PrivateObjectFactory.createApplicationManagerObject().onLowMemory = function() "
        "{ log.push('child'); }");
    page.main.Navigate();
    LowMemory();
    EXPECT_EQ(other.main.Eval("log.join()"), "other") << "another page keeps its own";
    EXPECT_EQ(child.Eval("log.join()"), "") << "the frames go with their page";
}

TEST(AnEventTargetWithoutAView, HearsNothing) {
    FakePage page;
    FakeBrowser::Get().viewId.reset();
    page.main.Eval(
        "var heard = 0; var manager = PrivateObjectFactory.createApplicationManagerObject(); "
        "manager.onLowMemory = function() { heard++; }");
    FakeBrowser::Get().viewId = "7";
    LowMemory();
    EXPECT_EQ(page.main.Eval("heard + ' ' + manager.getOwnerApplication(1)"), "0 null");
}

}  // namespace
}  // namespace OipfJavaScript

// Handlers and listeners as a page meets them, and how long they keep what alive.

#include "API/Src/IPluginController.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingObject.h"
#include "Tests/Bus/LogCapture.h"
#include "Tests/Unit/FakeBrowser.h"

namespace OipfJavaScript {
namespace {

constexpr const char* kManager =
    "var log = [], make = () => PrivateObjectFactory.createApplicationManagerObject(), manager = make();";

class AnEventTarget : public testing::Test, protected TestedPage {
 protected:
    AnEventTarget() { Eval(kManager); }
    static void Fire(int32_t code) {
        CDAEBrowserAPIWK::GetInstance()->SendEventToPlugins(event_t::Plain(code, 0));
    }
    static void LowMemory() { Fire(E_APP_LOW_MEMORY); }
    static void LoadError() { Fire(E_APP_LOAD_ERROR); }
    std::string SortedLog() { return Eval("log.splice(0).sort().join()"); }
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

TEST_F(AnEventTarget, CarriesTheArgumentsOfItsLastEventForListenersOnly) {
    Eval("manager.onApplicationLoadError = () => log.push('handler')");
    LoadError();
    EXPECT_EQ(Eval("[...log.splice(0), 'app' in manager, 'event' in manager].join()"), "handler,false,false");
    Eval(R"(manager.onApplicationLoadError = null;
            manager.addEventListener('ApplicationLoadError', e => log.push(e));)");
    LoadError();
    LoadError();
    EXPECT_EQ(Eval("[log.length, log[0] === log[1], log[0].app === log[1].app, manager.event === log[1], "
                   "manager.app === log[1].app].join()"),
              "2,false,false,true,true");
}

TEST_F(AnEventTarget, KeepsOneHandlerAndEachListenerOnce) {
    Eval(R"(
        function f() { log.push('f'); } function g() { log.push('g'); }
        manager.onLowMemory = g; manager.onLowMemory = f;
        log.push(manager.onLowMemory === f);
        manager.addEventListener('LowMemory', g); manager.addEventListener('LowMemory', g, true);)");
    LowMemory();
    EXPECT_EQ(Log(), "true,f,g");
    Eval("for (const act of ['add', 'remove']) manager[act + 'EventListener']('ApplicationLoadError', g)");
    LowMemory();
    EXPECT_EQ(Log(), "f") << "a listener goes from every event of its object";
    for (const char* value : {"null", "undefined", "7", "'f'", "{}"}) {
        Eval("manager.onLowMemory = f; manager.onLowMemory = " + std::string(value));
        EXPECT_EQ(Value("manager.onLowMemory"), "null") << value;
    }
    LowMemory();
    EXPECT_EQ(Log(), "");
}

TEST_F(AnEventTarget, TakesTwoOrThreeArgumentsForAListener) {
    ExpectAll("undefined", {"manager.addEventListener('LowMemory', null)",
                            "manager.removeEventListener('LowMemory', function() {}, {capture: true})"});
    for (const std::string arguments : {"'LowMemory'", "1, log.push", "'LowMemory', log.push, false, 1"})
        EXPECT_EQ(Thrown("manager.addEventListener(" + arguments + ")"), kBadArguments) << arguments;
    LowMemory();
}

TEST_F(AnEventTarget, TellsTheLogAndTheWindowOfTheListenerWhatItsListenersThrow) {
    FakeFrame& child = page.AddFrame();
    child.Share("manager", page.main);
    child.Share("log", page.main);
    Eval(R"(reportError = null;
        manager.onLowMemory = () => { log.push(1); throw new TypeError('mine'); };
        manager.addEventListener('LowMemory', () => { log.push(2); throw {toString() { throw 3; }}; });)");
    child.Eval("manager.addEventListener('LowMemory', () => { log.push(3); throw 'of the child'; });");
    LogCapture::Clear();
    LowMemory();
    EXPECT_EQ(SortedLog(), "1,2,3");
    EXPECT_EQ(Eval("reported.length + ' ' + reported[0]"), "2 TypeError: mine")
        << "to the one it had at the start";
    EXPECT_EQ(child.Eval("reported.join()"), "of the child");
    for (const std::string said : {"failed to call DOM level 1 call-back function.", "of the child",
                                   "(no text)", "TypeError: mine (http://tv/page.js:2)"})
        EXPECT_EQ(LogCapture::Count("OipfApplicationManager(LowMemory) - " + said), 1) << said;
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
        const removed = () => log.push('removed'), added = () => log.push('added');
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
        function go() {
            var another = make();
            another.onLowMemory = () => {
                log.push('x');
                another.onLowMemory = null;  // from here on nothing holds it
                another = null;
                for (var i = 0; i < 50; i++) go();
                collect();
                log.push('y');
            };
        }
        go(); manager = null;)");
    LowMemory();
    EXPECT_EQ(Log(), "x,y");
    page.main.CollectGarbage();
    LowMemory();
    EXPECT_EQ(Eval("log.length"), "100");
}

TEST_F(AnEventTarget, IsPinnedByAHandlerAndOnlyByAHandler) {
    const size_t before = BindingObject::AliveCount();
    Eval("for (var i = 0; i < 40; i++) make().onLowMemory; make().onLowMemory = () => log.push('pinned'); 0");
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
        for (const char* name : {"manager", "log"})
            child.Share(name, page.main);
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
        EXPECT_EQ(SortedLog(), "child,child,child on 0,child on 1,main,main on theirs");
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
        EXPECT_EQ(SortedLog(), "main,main on theirs") << "even in the dispatch that removes it";
        Eval("manager.addEventListener('LowMemory', late); theirs.onLowMemory = late;");
        LowMemory();
        EXPECT_EQ(Log(), "main") << "a script that runs on gives no handlers any more";
    }

    FakePage other;
    FakeFrame& child = page.AddFrame();
    for (FakeFrame* frame : {&other.main, &child})
        frame->Eval(kManager + std::string("manager.onLowMemory = () => log.push('heard')"));
    page.main.Navigate();
    LowMemory();
    EXPECT_EQ(other.main.Eval("log.join()"), "heard") << "another page keeps its own";
    EXPECT_EQ(child.Eval("log.join()"), "") << "the frames go with their page";
}

TEST_F(AnEventTarget, HearsNothingWithoutAView) {
    FakeBrowser::Get().viewId.reset();
    Eval(kManager + std::string("manager.onLowMemory = () => log.push('heard')"));
    FakeBrowser::Get().viewId = "7";
    LowMemory();
    EXPECT_EQ(Eval("log.length + ' ' + manager.getOwnerApplication(1)"), "0 null");
}

}  // namespace
}  // namespace OipfJavaScript

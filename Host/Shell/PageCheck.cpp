#include "Host/Shell/PageCheck.h"

#include <iostream>

#include <jsc/jsc.h>

#include "Host/Shell/View/Screenshot.h"

namespace Shell {

using namespace Host;

namespace {

// From the page's frame to the window's pixels it is two processes and the display.
constexpr unsigned kPaintingMs = 500;

// A world of our own: the page can neither see nor spoil these scripts.
constexpr char kWorld[] = "hbbtv-shell";

constexpr char kVerdictScript[] = R"(
    const element = () => document.getElementById('verdict');
    if (!required && !element())
        return 'none';
    const read = () => element()?.getAttribute('data-verdict');
    const given = verdict => verdict === 'pass' || verdict === 'fail';
    if (given(read()))
        return read();
    return new Promise(resolve => {
        new MutationObserver(() => given(read()) && resolve(read())).observe(document,
            { subtree: true, childList: true, attributes: true, attributeFilter: ['id', 'data-verdict'] });
    });
)";

// The page's frames wait for the compositor, which on a busy machine is some behind.
constexpr char kFramesScript[] = R"(
    for (let frame = 0; frame < 6; ++frame)
        await new Promise(requestAnimationFrame);
    return 'settled';
)";

}  // namespace

PageCheck::PageCheck(const Options& options, Screen& screen, std::function<void(int)> leave)
    : m_options(options), m_screen(screen), m_leave(std::move(leave)) {
    if (m_options.exitAfterLoad)
        restartClock();
}

PageCheck::~PageCheck() {
    if (m_cancellable)
        g_cancellable_cancel(m_cancellable.get());
}

void PageCheck::restartClock() {
    m_clock.reset(g_timeout_add_seconds(m_options.checkLimitSeconds, callback<&PageCheck::onTimeout>, this));
}

void PageCheck::pageDidLoad(BrowserView& view) {
    if (m_left || (!m_options.exitAfterLoad && !m_options.screenshot))
        return;
    m_view = retain(view.webView());
    if (m_options.exitAfterLoad)
        restartClock();
    runStep(m_options.exitAfterLoad ? Step::Verdict : Step::Frames);
}

void PageCheck::pageDidFail() {
    m_failed = true;
    finish();
}

void PageCheck::fail(const std::string& reason) {
    g_warning("%s", reason.c_str());
    m_failed = true;
}

// A page without a verdict is judged at once, unless it is required to give one.
void PageCheck::runStep(Step step) {
    m_painting.reset();
    if (m_cancellable)
        g_cancellable_cancel(m_cancellable.get());
    m_cancellable.reset(g_cancellable_new());
    m_step = step;
    GVariantDict arguments;
    g_variant_dict_init(&arguments, nullptr);
    // WebKit takes no booleans.
    g_variant_dict_insert(&arguments, "required", "d", m_options.requireVerdict ? 1.0 : 0.0);
    webkit_web_view_call_async_javascript_function(
        m_view.get(), step == Step::Verdict ? kVerdictScript : kFramesScript, -1,
        g_variant_dict_end(&arguments), kWorld, nullptr, m_cancellable.get(), onScriptDone, this);
}

void PageCheck::onScriptDone(GObject* view, GAsyncResult* result, gpointer self) {
    GErrorSlot error;
    const GObjectHandle<JSCValue> value(
        webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(view), result, error.out()));
    // Cancelled: this object is gone, or has begun anew with another page.
    if (error.is(G_IO_ERROR, G_IO_ERROR_CANCELLED))
        return;
    if (!value) {
        // The page went away; the next one begins anew, and the clock runs on.
        g_debug("page check: %s", error.message());
        return;
    }
    const GChars answer(jsc_value_to_string(value.get()));
    static_cast<PageCheck*>(self)->stepDone(answer.get());
}

void PageCheck::stepDone(const std::string& answer) {
    if (m_step == Step::Verdict) {
        m_verdict = answer;
        runStep(Step::Frames);
        return;
    }
    if (m_options.screenshot)
        m_painting.reset(g_timeout_add(kPaintingMs, callback<&PageCheck::onPainted>, this));
    else
        finish();
}

gboolean PageCheck::onPainted() {
    m_painting.forget();
    const std::string error = takeScreenshot(m_screen.widget(), *m_options.screenshot);
    if (!error.empty())
        fail("no screenshot: " + error);
    finish();
    return G_SOURCE_REMOVE;
}

gboolean PageCheck::onTimeout() {
    m_clock.forget();
    fail("no verdict of a loaded page within " + std::to_string(m_options.checkLimitSeconds) + " s");
    finish();
    return G_SOURCE_REMOVE;
}

void PageCheck::finish() {
    if (m_left || !m_options.exitAfterLoad)
        return;
    m_left = true;
    m_clock.reset();
    std::cout << "verdict: " << m_verdict << std::endl;
    m_leave(!m_failed && m_verdict != "fail" ? 0 : 1);
}

}  // namespace Shell

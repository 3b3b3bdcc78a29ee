#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"

#include <utility>

#include "API/Src/IPRResponse.h"
#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/ByteArray.h"
#include "IPC/DBUS/Src/DAEBrowserSignals.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "Wrapper/Src/SASMessage.h"
#include "gen/dbus/daebrowserapi-generated.h"

namespace {

constexpr ServiceDescription kService{
    .interface = "org.vantrel.hbbtv.IDAEBrowserAPI",
    .client = "CDAEBrowserAPIWK",
    .failureClient = "CDAEBrowserAPIWK",
    .creation = "iavevent_handler_proxy_new_sync()",
    .creationFailure = "idaebrowser_api_proxy_new_sync",
};

// Appends the numbers of an "au".
auto AppendTo(auto& numbers) {
    return OutWith([&numbers](GVariant* array) {
        gsize count = 0;
        const auto* values =
            static_cast<const guint32*>(g_variant_get_fixed_array(array, &count, sizeof(guint32)));
        numbers.insert(numbers.end(), values, values + count);
    });
}

std::vector<std::string> ByteStringsOf(GVariant* arrays) {
    std::vector<std::string> strings;
    strings.reserve(g_variant_n_children(arrays));
    for (gsize i = 0; i < g_variant_n_children(arrays); ++i) {
        const GVariantPtr child(g_variant_get_child_value(arrays, i));
        const std::span<const uint8_t> bytes = BytesOf(child.get());
        strings.emplace_back(bytes.begin(), bytes.end());
    }
    return strings;
}

void on_signal(const char* signal, GVariant* parameters, gpointer client) {
    DispatchDAEBrowserSignal(*static_cast<CDAEBrowserAPIWK*>(client), signal, parameters);
}

}  // namespace

CDBusProgrammeCollection::CDBusProgrammeCollection(GVariant* programmes) {
    GVariantIter entries;
    g_variant_iter_init(&entries, programmes);
    m_programmes.reserve(g_variant_n_children(programmes));
    const gchar* name = nullptr;
    const gchar* description = nullptr;
    const gchar* programmeId = nullptr;
    TCProgramInfo info;
    while (g_variant_iter_next(&entries, "(&s&suuyi&s)", &name, &description, &info.startTime, &info.duration,
                               &info.parentalRating, &info.eventId, &programmeId)) {
        info.name = name;
        info.description = description;
        info.programmeId = programmeId;
        m_programmes.push_back(info);
    }
}

bool CDBusProgrammeCollection::GetInfo(int index, std::string& name, std::string& description,
                                       uint32_t& startTime, uint32_t& duration, uint8_t& parentalRating,
                                       int32_t& eventId, std::string& programmeId) const {
    if (index < 0 || index >= NumberEntries())
        return false;
    const TCProgramInfo& info = m_programmes[static_cast<size_t>(index)];
    name = info.name;
    description = info.description;
    startTime = info.startTime;
    duration = info.duration;
    parentalRating = info.parentalRating;
    eventId = info.eventId;
    programmeId = info.programmeId;
    return true;
}

CDAEBrowserAPIWK* CDAEBrowserAPIWK::GetInstance() {
    static auto* const instance = new CDAEBrowserAPIWK;
    return instance;
}

CDAEBrowserAPIWK::CDAEBrowserAPIWK()
    : m_service(std::make_unique<DBusService<IDAEBrowserAPI>>(kService, idaebrowser_api_proxy_new_sync,
                                                              on_signal, this, CallSite(__func__))) {
    m_service->OnEnd([this] { OnSubscriptionsLost(); });
}

CDAEBrowserAPIWK::~CDAEBrowserAPIWK() = default;

void CDAEBrowserAPIWK::SetProfileSupport(uint16_t profile, uint8_t major, uint8_t minor,
                                         uint8_t micro) const {
    m_service->Call(__func__, idaebrowser_api_call_set_profile_support_sync, profile, major, minor, micro);
}

bool CDAEBrowserAPIWK::IsProfileSupported(uint16_t profile, uint8_t major, uint8_t minor,
                                          uint8_t micro) const {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_is_profile_supported_sync, profile, major,
                                 minor, micro, kResult);
}

std::string CDAEBrowserAPIWK::GetXmlCapabilities() const {
    return m_service->Call<std::string>(__func__, idaebrowser_api_call_get_xml_capabilities_sync, kResult);
}

bool CDAEBrowserAPIWK::HasCapability(const std::string& capability) {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_has_capability_sync, capability, kResult);
}

bool CDAEBrowserAPIWK::CurrentChannel(uint32_t& id) {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_current_channel_sync, Out(id), kResult);
}

void CDAEBrowserAPIWK::GetChannelList(std::list<uint32_t>& ids) {
    m_service->Call(__func__, idaebrowser_api_call_get_channel_list_sync, AppendTo(ids));
}

void CDAEBrowserAPIWK::GetPreferredAudioLang(std::string& languages) {
    m_service->Call(__func__, idaebrowser_api_call_get_preferred_audio_lang_sync, Out(languages));
}

void CDAEBrowserAPIWK::GetPreferredSubtitleLang(std::string& languages) {
    m_service->Call(__func__, idaebrowser_api_call_get_preferred_subtitle_lang_sync, Out(languages));
}

void CDAEBrowserAPIWK::GetPreferredUILang(std::string& languages) {
    m_service->Call(__func__, idaebrowser_api_call_get_preferred_uilang_sync, Out(languages));
}

bool CDAEBrowserAPIWK::CreateApplication(const std::string& url, int viewId) {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_create_application_sync, url, viewId,
                                 kResult);
}

void CDAEBrowserAPIWK::DestroyApplication(int viewId) {
    m_service->Call(__func__, idaebrowser_api_call_destroy_application_sync, viewId);
}

void CDAEBrowserAPIWK::Show(int viewId) {
    m_service->Call(__func__, idaebrowser_api_call_show_sync, viewId);
}

void CDAEBrowserAPIWK::Hide(int viewId) {
    m_service->Call(__func__, idaebrowser_api_call_hide_sync, viewId);
}

bool CDAEBrowserAPIWK::IsBroadcastRelated() {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_is_broadcast_related_sync, kResult);
}

bool CDAEBrowserAPIWK::IsTrusted() {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_is_trusted_sync, kResult);
}

bool CDAEBrowserAPIWK::IsURLInAppBoundary(const std::string& url) {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_is_urlin_app_boundary_sync, url, kResult);
}

void CDAEBrowserAPIWK::SetKeyMask(int mask) {
    m_service->Call(__func__, idaebrowser_api_call_set_key_mask_sync, mask);
}

uint32_t CDAEBrowserAPIWK::GetKeyMask() {
    return m_service->Call<uint32_t>(__func__, idaebrowser_api_call_get_key_mask_sync, kResult);
}

uint32_t CDAEBrowserAPIWK::GetMaxKeyMask() {
    return m_service->Call<uint32_t>(__func__, idaebrowser_api_call_get_max_key_mask_sync, kResult);
}

std::vector<std::string> CDAEBrowserAPIWK::GetProgramDescriptors(uint32_t id, uint16_t eventId, int tag,
                                                                 int tagExtension, int privateData) {
    return m_service->Call<std::vector<std::string>>(
        __func__, idaebrowser_api_call_get_program_descriptors_sync, id, eventId, tag, tagExtension,
        privateData, ResultWith(ByteStringsOf));
}

std::unique_ptr<IProgrammeCollection> CDAEBrowserAPIWK::GetProgCollection(uint32_t id) {
    // The failure line names the other class; log readers of the platform know it so.
    auto collection = m_service->Call<std::unique_ptr<CDBusProgrammeCollection>>(
        {__func__, {}, "CAVEventHandlerWK"}, idaebrowser_api_call_get_prog_collection_sync, id,
        ResultWith(std::make_unique<CDBusProgrammeCollection, GVariant*&>));
    if (collection) {
        HBBTV_LOG_DEBUG("CDAEBrowserAPIWK::%s return collection of %d items", __func__,
                        collection->NumberEntries());
    }
    return collection;
}

bool CDAEBrowserAPIWK::GetChannelsAndEventFromUrl(const std::string& url, std::vector<uint32_t>& channelIds,
                                                  uint16_t& eventId) const {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_get_channels_and_event_from_url_sync, url,
                                 AppendTo(channelIds), Out(eventId), kResult);
}

int CDAEBrowserAPIWK::GetParentalLockStatus() {
    return m_service->Call<int>(__func__, idaebrowser_api_call_get_parental_lock_status_sync, kResult);
}

int CDAEBrowserAPIWK::GetDvbsiParentalLockMaxVal() {
    return m_service->Call<int>(__func__, idaebrowser_api_call_get_dvbsi_parental_lock_max_val_sync, kResult);
}

int CDAEBrowserAPIWK::GetDvbsiParentalLockMinVal() {
    return m_service->Call<int>(__func__, idaebrowser_api_call_get_dvbsi_parental_lock_min_val_sync, kResult);
}

void CDAEBrowserAPIWK::GetCIPlusDrmType(std::string& drmTypes) const {
    m_service->Call(__func__, idaebrowser_api_call_get_ciplus_drm_type_sync, Out(drmTypes));
}

bool CDAEBrowserAPIWK::IsSASSessionOpen() {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_is_sassession_open_sync, kResult);
}

void CDAEBrowserAPIWK::SendDRMMessage(int& transactionId, std::string msgType, std::string msg,
                                      std::string DRMSystemID) {
    m_service->Call(__func__, idaebrowser_api_call_send_drmmessage_sync, msgType, msg, DRMSystemID,
                    Out(transactionId));
}

void CDAEBrowserAPIWK::GetCountryID(std::string& country) const {
    m_service->Call(__func__, idaebrowser_api_call_get_country_id_sync, Out(country));
}

bool CDAEBrowserAPIWK::GetTime(unsigned long& utc, int& offset) const {
    return m_service->Call<bool>(__func__, idaebrowser_api_call_get_time_sync, Out(utc), Out(offset),
                                 kResult);
}

TDSMCCJobId CDAEBrowserAPIWK::StreamEventSubscribe(const char* url, const char* name) {
    const auto job = m_service->Call<TDSMCCJobId>(__func__, idaebrowser_api_call_stream_event_subscribe_sync,
                                                  url, name, kResult);
    if (job != 0)
        ++m_streamEvents;
    return job;
}

bool CDAEBrowserAPIWK::StreamEventUnsubscribe(TDSMCCJobId id) {
    m_streamEvents -= m_streamEvents > 0 ? 1 : 0;
    return m_service->Call<bool>(__func__, idaebrowser_api_call_stream_event_unsubscribe_sync, id, kResult);
}

void CDAEBrowserAPIWK::SendStreamEventUnsubscribe(TDSMCCJobId id) {
    m_streamEvents -= m_streamEvents > 0 ? 1 : 0;
    m_service->Send("StreamEventUnsubscribe", idaebrowser_api_call_stream_event_unsubscribe, id);
}

uint64_t CDAEBrowserAPIWK::Life() const {
    return m_service->Life();
}

// Pages are not told, and may have what they need to subscribe again only when they load.
void CDAEBrowserAPIWK::OnSubscriptionsLost() {
    if (const size_t lost = std::exchange(m_streamEvents, 0))
        HBBTV_LOG_WARNING("the receiver has gone, and %zu stream event subscriptions with it", lost);
}

void CDAEBrowserAPIWK::SubscribeEvents(IPluginController* controller) {
    m_subscribers.Add(controller);
}

void CDAEBrowserAPIWK::UnsubscribeEvents(IPluginController* controller) {
    if (controller == nullptr) {
        HBBTV_LOG_DEBUG("CDAEBrowserAPIWK::%s stop sending event to plugins", __func__);
        return;
    }
    m_subscribers.Remove(controller);
}

void CDAEBrowserAPIWK::SendEventToPlugins(event_t event) {
    HBBTV_LOG_DEBUG("CDAEBrowserAPIWK::%s", __func__);
    m_subscribers.Deliver(event);
}

void CDAEBrowserAPIWK::SendSASDataToPlugins(const uint8_t* bytes, size_t length) {
    const SASMessage message({bytes, length});
    if (message.IsValid())
        SendEventToPlugins(event_t::WithRecord(E_SAS_MESSAGE, 0, &message));
}

void CDAEBrowserAPIWK::SendPlayReadyDataToPlugins(const IPRResponse* response) {
    SendEventToPlugins(event_t::WithRecord(E_PLAYREADY_RESPONSE, 0, response));
}

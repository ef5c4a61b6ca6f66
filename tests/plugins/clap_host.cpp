#include "clap_host.h"

#include <clap/ext/thread-check.h>
#include <dlfcn.h>

#include <cstring>
#include <stdexcept>
#include <utility>

#include "plugins/clap/extensions.h"

namespace channelstrip::plugin_test {

ClapBinary::ClapBinary(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
  if (!handle_) throw std::runtime_error(dlerror());
  entry_ = static_cast<const clap_plugin_entry_t*>(dlsym(handle_, "clap_entry"));
  if (!entry_ || !entry_->init(path)) throw std::runtime_error("no clap_entry");
}

ClapBinary::ClapBinary(const clap_plugin_entry_t& entry) : entry_(&entry) {
  if (!entry_->init("")) throw std::runtime_error("no plugins");
}

ClapBinary::~ClapBinary() {
  entry_->deinit();
  if (handle_) dlclose(handle_);
}

const clap_plugin_factory_t& ClapBinary::factory() const {
  return *static_cast<const clap_plugin_factory_t*>(entry_->get_factory(CLAP_PLUGIN_FACTORY_ID));
}

void ClapEvents::set(std::uint32_t frame, clap_id id, double value, void* cookie) {
  add({.header = {.size = sizeof(clap_event_param_value_t),
                  .time = frame,
                  .space_id = CLAP_CORE_EVENT_SPACE_ID,
                  .type = CLAP_EVENT_PARAM_VALUE,
                  .flags = 0},
       .param_id = id,
       .cookie = cookie,
       .note_id = -1,
       .port_index = -1,
       .channel = -1,
       .key = -1,
       .value = value});
}

ClapInstance::ClapInstance(const ClapBinary& binary)
    : host_{.clap_version = CLAP_VERSION,
            .host_data = this,
            .name = "tests",
            .vendor = "",
            .url = "",
            .version = "1",
            .get_extension =
                [](const clap_host_t* host, const char* id) {
                  return static_cast<ClapInstance*>(host->host_data)->host_extension(id);
                },
            .request_restart = [](const clap_host_t*) {},
            .request_process = [](const clap_host_t*) {},
            .request_callback = [](const clap_host_t*) {}} {
  const clap_plugin_factory_t& factory = binary.factory();
  plugin_ = factory.create_plugin(&factory, &host_, factory.get_plugin_descriptor(&factory, 0)->id);
  if (!plugin_ || !plugin_->init(plugin_)) throw std::runtime_error("no plugin");
  shown.reserve(16);
}

ClapInstance::~ClapInstance() {
  if (is_active_) deactivate();
  plugin_->destroy(plugin_);
}

const void* ClapInstance::host_extension(std::string_view id) const {
  static const clap_host_params_t params{
      .rescan =
          [](const clap_host_t* host, clap_param_rescan_flags) {
            auto& self = *static_cast<ClapInstance*>(host->host_data);
            ++self.rescans;
            if (std::this_thread::get_id() != self.main_thread_) self.was_called_wrongly = true;
          },
      .clear = [](const clap_host_t*, clap_id, clap_param_clear_flags) {},
      .request_flush =
          [](const clap_host_t* host) {
            ++static_cast<ClapInstance*>(host->host_data)->flushes_asked;
          }};
  static const clap_host_timer_support_t timer{
      .register_timer =
          [](const clap_host_t* host, std::uint32_t, clap_id* timer_id) {
            *timer_id = 7;
            return !std::exchange(static_cast<ClapInstance*>(host->host_data)->has_timer_, true);
          },
      .unregister_timer =
          [](const clap_host_t* host, clap_id timer_id) {
            return std::exchange(static_cast<ClapInstance*>(host->host_data)->has_timer_, false) &&
                   timer_id == 7;
          }};
  if (id == CLAP_EXT_TIMER_SUPPORT) return &timer;
  static const clap_host_thread_check_t check{
      .is_main_thread =
          [](const clap_host_t* host) {
            return std::this_thread::get_id() ==
                   static_cast<ClapInstance*>(host->host_data)->main_thread_;
          },
      .is_audio_thread = [](const clap_host_t*) { return true; }};
  if (id == CLAP_EXT_PARAMS) return &params;
  return id == CLAP_EXT_THREAD_CHECK ? &check : nullptr;
}

bool ClapInstance::select(std::uint32_t format) {
  return extension<clap::PortsConfigExtension>(clap::kPortsConfigExtension).select(plugin_, format);
}

bool ClapInstance::activate(double rate) {
  is_active_ = plugin_->activate(plugin_, rate, 1, 1 << 20);
  return is_active_ && plugin_->start_processing(plugin_);
}

void ClapInstance::deactivate() {
  plugin_->stop_processing(plugin_);
  plugin_->deactivate(plugin_);
  is_active_ = false;
}

const clap_plugin_params_t& ClapInstance::params() const {
  return extension<clap_plugin_params_t>(CLAP_EXT_PARAMS);
}

double ClapInstance::value(const std::string& symbol) const {
  double value = 0;
  if (!params().get_value(plugin_, id_of(symbol), &value)) throw std::out_of_range(symbol);
  return value;
}

void ClapInstance::flush(const ClapEvents& events) const {
  params().flush(plugin_, events.list(), nullptr);
}

void ClapInstance::flush() {
  const ClapEvents none;
  const clap_output_events_t pushed{
      .ctx = this, .try_push = [](const clap_output_events_t* list, const clap_event_header_t* e) {
        return static_cast<ClapInstance*>(list->ctx)->push(e);
      }};
  params().flush(plugin_, none.list(), &pushed);
}

void ClapInstance::tick() const {
  if (!has_timer_) return;
  extension<clap_plugin_timer_support_t>(CLAP_EXT_TIMER_SUPPORT).on_timer(plugin_, 7);
}

// Allocates nothing for values.
bool ClapInstance::push(const clap_event_header_t* event) {
  if (event->type != CLAP_EVENT_PARAM_VALUE) {
    gestures.push_back(*reinterpret_cast<const clap_event_param_gesture_t*>(event));
    return true;
  }
  if (shown.size() == shown.capacity()) return false;
  shown.push_back(*reinterpret_cast<const clap_event_param_value_t*>(event));
  return true;
}

void ClapInstance::set(const std::string& symbol, double value) {
  ClapEvents events;
  events.set(0, id_of(symbol), value);
  flush(events);
}

void ClapInstance::set_busy() {
  for (const auto& [symbol, value] : kBusy) set(symbol, value);
}

namespace {

struct StateBytes {
  std::string bytes;
  std::size_t chunk, at = 0;
};

}  // namespace

std::optional<std::string> ClapInstance::save(std::size_t chunk) const {
  StateBytes to{"", chunk};
  const clap_ostream_t stream{
      .ctx = &to, .write = [](const clap_ostream_t* s, const void* data, std::uint64_t size) {
        auto& written = *static_cast<StateBytes*>(s->ctx);
        const std::size_t length = std::min<std::size_t>(size, written.chunk);
        written.bytes.append(static_cast<const char*>(data), length);
        return length > 0 ? static_cast<std::int64_t>(length) : std::int64_t{-1};
      }};
  if (!extension<clap_plugin_state_t>(CLAP_EXT_STATE).save(plugin_, &stream)) return std::nullopt;
  return to.bytes;
}

bool ClapInstance::load(const std::string& state, std::size_t chunk) const {
  StateBytes from{state, chunk};
  const clap_istream_t stream{
      .ctx = &from, .read = [](const clap_istream_t* s, void* data, std::uint64_t size) {
        auto& read = *static_cast<StateBytes*>(s->ctx);
        if (read.chunk == 0) return std::int64_t{-1};
        const std::size_t length =
            std::min({static_cast<std::size_t>(size), read.chunk, read.bytes.size() - read.at});
        std::memcpy(data, read.bytes.data() + read.at, length);
        read.at += length;
        return static_cast<std::int64_t>(length);
      }};
  return extension<clap_plugin_state_t>(CLAP_EXT_STATE).load(plugin_, &stream);
}

namespace {

clap_audio_buffer_t buffer_of(float** channels, std::size_t count) {
  return {.data32 = channels,
          .data64 = nullptr,
          .channel_count = static_cast<std::uint32_t>(count),
          .latency = 0,
          .constant_mask = 0};
}

}  // namespace

ClapCall::ClapCall(const std::vector<const float*>& inputs, const float* key,
                   const std::vector<float*>& outputs, std::uint32_t frames,
                   const clap_input_events_t* events, const clap_output_events_t* shown)
    : key_(const_cast<float*>(key)),
      inputs_{buffer_of(const_cast<float**>(inputs.data()), inputs.size()), buffer_of(&key_, 1)},
      output_(buffer_of(const_cast<float**>(outputs.data()), outputs.size())),
      call_{.steady_time = -1,
            .frames_count = frames,
            .transport = nullptr,
            .audio_inputs = inputs_,
            .audio_outputs = &output_,
            .audio_inputs_count = 2,
            .audio_outputs_count = 1,
            .in_events = events,
            .out_events = shown} {}

clap_process_status ClapInstance::process(const std::vector<const float*>& inputs, const float* key,
                                          const std::vector<float*>& outputs, std::uint32_t frames,
                                          const clap_input_events_t* events) {
  const ClapEvents none;
  shown.clear();
  const clap_output_events_t pushed{
      .ctx = this, .try_push = [](const clap_output_events_t* list, const clap_event_header_t* e) {
        return static_cast<ClapInstance*>(list->ctx)->push(e);
      }};
  return process(ClapCall(inputs, key, outputs, frames, events ? events : none.list(), &pushed));
}

}  // namespace channelstrip::plugin_test

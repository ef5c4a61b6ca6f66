#include "lv2_plugin.h"

#include <fmt/format.h>
#include <lv2/resize-port/resize-port.h>

#include <algorithm>
#include <stdexcept>

namespace channelstrip::bench {
namespace {

LilvNodeOwner uri_node(LilvWorld* world, const std::string& uri) {
  return LilvNodeOwner(lilv_new_uri(world, uri.c_str()));
}

const LilvPlugin* find_plugin(LilvWorld* world, const std::string& uri) {
  const LilvPlugin* plugin =
      lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), uri_node(world, uri).get());
  if (plugin == nullptr) throw std::runtime_error(fmt::format("{} isn't installed", uri));
  return plugin;
}

void require_offered(const LilvPlugin* plugin, const Lv2Features& features) {
  const std::unique_ptr<LilvNodes, FreeWith<lilv_nodes_free>> required(
      lilv_plugin_get_required_features(plugin));
  LILV_FOREACH(nodes, it, required.get()) {
    const char* uri = lilv_node_as_uri(lilv_nodes_get(required.get(), it));
    if (!features.offers(uri)) throw std::runtime_error(fmt::format("needs {}", uri));
  }
}

// The size of an atom port's buffer. Messages are rare and small, but some plugins ask for room for
// what they may send to a display.
std::size_t atom_bytes(LilvWorld* world, const LilvPlugin* plugin, const LilvPort* port) {
  const LilvNodeOwner least(
      lilv_port_get(plugin, port, uri_node(world, LV2_RESIZE_PORT__minimumSize).get()));
  const int bytes = least == nullptr ? 0 : lilv_node_as_int(least.get());
  return static_cast<std::size_t>(std::max(bytes, 65536));
}

}  // namespace

LilvWorldOwner load_lv2_world() {
  LilvWorldOwner world(lilv_world_new());
  lilv_world_load_all(world.get());
  return world;
}

Lv2Plugin::Lv2Plugin(LilvWorld* world, const PluginSettings& settings, double sample_rate,
                     int channels, int samples_per_call)
    : samples_per_call_(static_cast<std::uint32_t>(samples_per_call)),
      features_(std::make_unique<Lv2Features>(sample_rate, samples_per_call)),
      outputs_(index(channels), std::vector<float>(samples_per_call_)),
      silence_(samples_per_call_) {
  const LilvPlugin* plugin = find_plugin(world, settings.uri);
  name_ = lilv_node_as_string(LilvNodeOwner(lilv_plugin_get_name(plugin)).get());
  try {
    require_offered(plugin, *features_);
    set_controls(world, plugin, settings.controls);
    find_ports(world, plugin);
    instance_.reset(lilv_plugin_instantiate(plugin, sample_rate, features_->get()));
    if (instance_ == nullptr) throw std::runtime_error("can't be instantiated");
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(fmt::format("{}: {}", name_, error.what()));
  }
  connect_ports();
  lilv_instance_activate(instance_.get());
}

void Lv2Plugin::End::operator()(LilvInstance* instance) const {
  lilv_instance_deactivate(instance);
  lilv_instance_free(instance);
}

void Lv2Plugin::set_controls(LilvWorld* world, const LilvPlugin* plugin,
                             const std::map<std::string, float>& values) {
  const std::uint32_t ports = lilv_plugin_get_num_ports(plugin);
  std::vector<float> least(ports), most(ports);
  controls_.resize(ports);
  lilv_plugin_get_port_ranges_float(plugin, least.data(), most.data(), controls_.data());
  const LilvNodeOwner input = uri_node(world, LV2_CORE__InputPort);
  for (const auto& [symbol, value] : values) {
    const LilvNodeOwner symbol_node(lilv_new_string(world, symbol.c_str()));
    const LilvPort* port = lilv_plugin_get_port_by_symbol(plugin, symbol_node.get());
    if (port == nullptr || !lilv_port_is_a(plugin, port, input.get())) {
      throw std::runtime_error(fmt::format("has no control {}", symbol));
    }
    const std::uint32_t i = lilv_port_get_index(plugin, port);
    if (!(value >= least[i] && value <= most[i])) {
      throw std::runtime_error(
          fmt::format("{} must lie within {} to {}", symbol, least[i], most[i]));
    }
    controls_[i] = value;
  }
  if (lilv_plugin_has_latency(plugin)) {
    latency_ = &controls_[lilv_plugin_get_latency_port_index(plugin)];
  }
}

void Lv2Plugin::find_ports(LilvWorld* world, const LilvPlugin* plugin) {
  const LilvNodeOwner audio = uri_node(world, LV2_CORE__AudioPort);
  const LilvNodeOwner atom = uri_node(world, LV2_ATOM__AtomPort);
  const LilvNodeOwner input = uri_node(world, LV2_CORE__InputPort);
  for (std::uint32_t i = 0; i < controls_.size(); ++i) {
    const LilvPort* port = lilv_plugin_get_port_by_index(plugin, i);
    const bool is_input = lilv_port_is_a(plugin, port, input.get());
    if (lilv_port_is_a(plugin, port, audio.get())) {
      (is_input ? input_ports_ : output_ports_).push_back(i);
    } else if (lilv_port_is_a(plugin, port, atom.get())) {
      const std::size_t words = atom_bytes(world, plugin, port) / sizeof(std::uint64_t);
      atoms_.push_back({i, is_input, std::vector<std::uint64_t>(words)});
    }
  }
  if (input_ports_.size() < outputs_.size() || output_ports_.size() != outputs_.size()) {
    throw std::runtime_error(fmt::format("doesn't process {} channels", outputs_.size()));
  }
}

void Lv2Plugin::connect_ports() {
  const auto connect = [&](std::uint32_t port, void* data) {
    lilv_instance_connect_port(instance_.get(), port, data);
  };
  // Connects every port to a float, then those of other types to their buffers.
  for (std::uint32_t i = 0; i < controls_.size(); ++i) connect(i, &controls_[i]);
  for (AtomPort& atom : atoms_) connect(atom.port, atom.buffer.data());
  for (const std::uint32_t port : input_ports_) connect(port, silence_.data());
  for (std::size_t c = 0; c < outputs_.size(); ++c) connect(output_ports_[c], outputs_[c].data());
}

void Lv2Plugin::connect_input(int channel, const float* samples) {
  // The function takes a pointer to non-const for any port; a plugin doesn't write to an input.
  lilv_instance_connect_port(instance_.get(), input_ports_[index(channel)],
                             const_cast<float*>(samples));
}

void Lv2Plugin::run() {
  for (AtomPort& port : atoms_) {
    // Inputs get no events; outputs are told how much room they have.
    const std::size_t room = port.buffer.size() * sizeof(std::uint64_t) - sizeof(LV2_Atom);
    auto* sequence = reinterpret_cast<LV2_Atom_Sequence*>(port.buffer.data());
    sequence->atom.size =
        static_cast<std::uint32_t>(port.is_input ? sizeof(LV2_Atom_Sequence_Body) : room);
    sequence->atom.type = port.is_input ? sequence_type_ : chunk_type_;
    sequence->body = {};
  }
  lilv_instance_run(instance_.get(), samples_per_call_);
}

}  // namespace channelstrip::bench

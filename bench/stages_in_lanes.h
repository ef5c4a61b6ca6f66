// The stages in lanes, each by itself.

#pragma once

#include <ChannelStrip/frame/channel_strip.h>

#include <memory>
#include <vector>

#include "stage_table.h"

namespace channelstrip::bench {

// What the stages of WideStrip work on, and one quad that each of them may overwrite.
template <typename Layout>
struct LaneStages {
  using Channel = typename Layout::Channel;
  using Group = typename Layout::Group;

  explicit LaneStages(const SChannelStrip_Alg_Context* const* contexts)
      : strips(contexts),
        eq(strips),
        key(strips),
        links(strips),
        readouts(strips, links),
        meters(strips) {
    load_curve_coefs<Layout>(curves, strips);
    load_group_coefs<Layout>(groups, strips);
    load_group_states<Layout>(state, strips, links);
    for (int lane = 0; lane < kWidth<Channel>; ++lane) {
      inputs[lane] = strips[Layout::strip_of_channel_lane(lane)]->inputs[Layout::channel_of(lane)];
    }
    find_quad(0);
    find_targets(curves, quad);
    smooth_terms(groups, state, rate, quad);
    channelstrip::find_gains(quad);
  }

  void find_quad(int32_t q) {
    load_lanes(audio, inputs, q * kQuad);
    for (int k = 0; k < kQuad; ++k) levels[k] = links.levels(magnitude(audio[k]));
    detect(groups, state, levels, quad);
  }

  const SChannelStrip_Alg_Context* const* strips;
  const float* inputs[kWidth<Channel>];
  EqLanes<Layout, 1> eq;
  KeyLanes<Layout> key;
  LinkLanes<Layout> links;
  CurveCoefs<Covering<4 * Layout::kStride>> curves;
  GroupCoefs<Group> groups;
  GroupState<Group> state;
  Group rate{};
  ReadoutLanes<Layout> readouts;
  MeterLanes<Layout> meters;
  Channel audio[kQuad], detection[kQuad];
  Group levels[kQuad];
  GainQuad<Group, Layout::kStride> quad;
};

template <int Channels, int Groups, int Strips>
std::vector<Stage> stages_in_lanes(const SChannelStrip_Alg_Context* const* strips) {
  using Layout = channelstrip::Layout<Channels, Groups, Strips>;
  const auto it = std::make_shared<LaneStages<Layout>>(strips);
  const auto every_quad = [](auto work) {
    return [work] {
      for (int32_t q = 0; q < kQuads; ++q) work(q);
    };
  };
  return {
      {"whole strip", [=] { process_in_lanes<Channels, Groups, Strips>(strips); }},
      {"equaliser, 8 bands", every_quad([=](int32_t q) {
         load_lanes(it->audio, it->inputs, q * kQuad);
         it->eq.run(0, q, it->audio);
         it->eq.run(1, q, it->audio);
       })},
      {"key filter",
       every_quad([=](int32_t q) { it->key.detect(it->audio, q * kQuad, it->detection); })},
      {"detector", every_quad([=](int32_t q) { it->find_quad(q); })},
      {"logarithm and curves", every_quad([=](int32_t) { find_targets(it->curves, it->quad); })},
      {"attack, release, gate, hold",
       every_quad([=](int32_t) { smooth_terms(it->groups, it->state, it->rate, it->quad); })},
      {"decibels to gains", every_quad([=](int32_t) { channelstrip::find_gains(it->quad); })},
      {"readouts", every_quad([=](int32_t) { it->readouts.update(it->quad); })},
      {"peak meters", every_quad([=](int32_t) { it->meters.meter(it->detection, it->audio); })},
  };
}

}  // namespace channelstrip::bench

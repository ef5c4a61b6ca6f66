// Ways to connect the buffers of a scene's instances, which must lie apart before.

#pragma once

#include <cstddef>

#include "scenes.h"

namespace channelstrip::test {

using Wiring = void(Scene& scene, std::size_t channels);

Wiring in_place, neighbours_swapped, rotated_up, rotated_down, reversed;
Wiring one_input_behind_all, one_input_behind_all_and_written_first, one_output_behind_all,
    one_output_behind_pairs, input_of_every_channel_is_the_last_output;
Wiring key_is_a_main_input, key_is_a_main_input_in_place, key_is_an_output;
Wiring chained, chained_backwards, key_is_an_output_of_the_instance_before,
    all_instances_in_place_on_one_set, each_instance_twice_in_a_row, each_instance_again_at_the_end;

inline constexpr Wiring* kEveryWiring[] = {
    in_place,
    neighbours_swapped,
    rotated_up,
    rotated_down,
    reversed,
    one_input_behind_all,
    one_input_behind_all_and_written_first,
    one_output_behind_all,
    one_output_behind_pairs,
    input_of_every_channel_is_the_last_output,
    key_is_a_main_input,
    key_is_a_main_input_in_place,
    key_is_an_output,
    chained,
    chained_backwards,
    key_is_an_output_of_the_instance_before,
    all_instances_in_place_on_one_set,
    each_instance_twice_in_a_row,
    each_instance_again_at_the_end,
};

}  // namespace channelstrip::test

-- Makes an Ardour project with the plugin on a track, or tells what a saved one holds.
--
--   ardour7-lua ardour-project.lua make FOLDER URI CHANNELS PRESET PARAMETER VALUE LATER FRAME [key]
--   ardour7-lua ardour-project.lua tell FOLDER
--
-- PARAMETER, by its place among the control ports, is VALUE, and LATER from FRAME on.
-- With "key" a track of that name feeds the plugin's side-chain.
local todo, folder, uri = arg[1], arg[2], arg[3]
local channels, preset, parameter, value = tonumber(arg[4]), arg[5], tonumber(arg[6]), tonumber(arg[7])
local later, frame = tonumber(arg[8]), tonumber(arg[9])
AudioEngine:set_backend("None (Dummy)", "", "")
local project = load_session(folder, "project")
assert(project, "no project")

local function automation_of(strip, plugin, place)
  local port = -1
  repeat
    port = port + 1
    if plugin:parameter_is_control(port) then place = place - 1 end
  until place < 0
  return strip:to_automatable():automation_control(
    Evoral.Parameter(ARDOUR.AutomationType.PluginAutomation, 0, port), false)
end

local function new_track(name, count)
  return project:new_audio_track(count, count, nil, 1, name, ARDOUR.PresentationInfo.max_order,
    ARDOUR.TrackMode.Normal, true):front()
end

local function make()
  local track = new_track("take", channels)
  local strip = ARDOUR.LuaAPI.new_plugin(project, uri, ARDOUR.PluginType.LV2, "")
  assert(not strip:isnil(), "Ardour has no " .. uri)
  assert(track:add_processor_by_index(strip, 0, nil, true) == 0, "Ardour doesn't insert the plugin")
  local plugin = strip:to_insert():plugin(0)
  assert(plugin:load_preset(plugin:preset_by_label(preset)), "Ardour doesn't load the preset")
  if arg[10] == "key" then
    local output = new_track("key", 1):output()
    assert(track:add_sidechain(strip), "Ardour finds no side-chain")
    output:disconnect_all(nil)
    assert(output:nth(0):connect(strip:to_insert():sidechain_input():nth(0):name()) == 0)
  end
  -- Channels go straight through: panners would mix them.
  for _, route in ipairs({ track, project:master_out() }) do
    if not route:panner_shell():isnil() then route:panner_shell():set_bypassed(true) end
  end
  local _, curve = ARDOUR.LuaAPI.plugin_automation(strip, parameter)
  for _, point in ipairs({ { 0, value }, { frame, later } }) do
    curve:add(Temporal.timepos_t(point[1]), point[2], false, true)
  end
  assert(curve:set_interpolation(Evoral.InterpolationStyle.Discrete), "Ardour sets no steps")
  automation_of(strip, plugin, parameter):set_automation_state(ARDOUR.AutoState.Play)
  assert(project:save_state("") == 0, "Ardour doesn't save the project")
end

local function tell()
  local strip = project:route_by_name("take"):nth_plugin(0)
  local plugin = strip:to_insert():plugin(0)
  print("TOLD plugin " .. plugin:unique_id())
  local place = -1
  for port = 0, plugin:parameter_count() - 1 do
    if plugin:parameter_is_control(port) then
      place = place + 1
      if plugin:parameter_is_input(port) then
        print(string.format("TOLD %d %.9g", place, (ARDOUR.LuaAPI.get_processor_param(strip, place))))
        local _, curve = ARDOUR.LuaAPI.plugin_automation(strip, place)
        local plays = automation_of(strip, plugin, place):automation_state() == ARDOUR.AutoState.Play
        if plays then print(string.format("TOLD automated %d %d", place, curve:size())) end
      end
    end
  end
end

if todo == "make" then
  make()
else
  tell()
end
close_session()
quit()

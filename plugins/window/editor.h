// What pointer and keyboard do to a strip's values: no window, no host, no drawing.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "../owned.h"
#include "../view/layout.h"
#include "../view/model.h"
#include "steps.h"

namespace channelstrip::window {

struct Modifiers {
  bool shift = false, control = false;
};

enum class Key { kTab, kEnter, kEscape, kUp, kDown, kLeft, kRight, kBackspace, kDelete, kSpace };

// Who is told of changes: gestures begin and end, values are set in between.
class Sink {
 public:
  virtual void begin(std::size_t parameter) = 0;
  virtual void set(std::size_t parameter, double value) = 0;
  virtual void end(std::size_t parameter) = 0;

 protected:
  ~Sink() = default;
};

// One thread's. Times are in seconds from any moment on. Throws nothing but std::bad_alloc.
class Editor {
 public:
  Editor(Sink& sink, std::uint32_t format, double sample_rate);

  // From the host. A value that is being changed here stays as it is here.
  void set_value(std::size_t parameter, double value);
  void set_stream(std::uint32_t format, double sample_rate);
  void resize(view::Size size);

  void move(view::Point point, Modifiers modifiers);
  void leave();  // the pointer has left the window
  // `clicks` is 2 for the second press of a double click.
  void press(view::Point point, int clicks, Modifiers modifiers);
  void release(view::Point point, Modifiers modifiers);
  void turn(view::Point point, double steps, Modifiers modifiers, double time);  // the wheel
  // False for a key that there is no use for.
  bool press(Key key, Modifiers modifiers, double time);
  bool type(std::string_view text, Modifiers modifiers);  // UTF-8

  // As they are now, for drawing.
  const view::Setup& setup();
  const view::Layout& layout();
  const view::Attention& attention() const { return attention_; }
  // Whether a click has asked for it since the last call.
  bool takes_holds_cleared() { return std::exchange(clears_holds_, false); }

 private:
  struct Drag {
    view::Point last;     // of the pointer
    double x = 0, y = 0;  // where it would be without fine steps, in pixels or positions
    bool has_moved = false;
  };

  double value(std::size_t parameter) const { return values_[parameter]; }
  void begin(std::size_t parameter);
  void set(std::size_t parameter, double value);
  void end();
  void change(std::size_t parameter, double value) {
    begin(parameter);
    set(parameter, value);
    end();
  }
  void nudge(std::size_t parameter, double steps, Modifiers modifiers, double time);
  void apply(const Step& step, bool is_undone);
  void undo();
  void redo();
  void reset_band(std::size_t band);
  void add_band(view::Point point);
  void set_rounded(std::size_t parameter, double value, Modifiers modifiers);
  void drag_handle(Modifiers modifiers, view::Point by);
  void drag_value(std::size_t parameter, Modifiers modifiers, view::Point by);
  void click(const view::Cell& cell, Modifiers modifiers);
  void start_typing(std::string text);
  bool finish_typing();
  void focus_next(int direction);
  const view::Cell* focused_cell();

  Sink& sink_;
  std::uint32_t format_;
  double sample_rate_;
  view::Size size_ = view::kUsualSize;
  std::vector<double> values_;
  plugins::Settings settings_ = plugins::new_settings();

  bool is_setup_old_ = true, is_layout_old_ = true;
  view::Setup setup_;
  view::Layout layout_;

  view::Attention attention_;
  Drag drag_;
  bool clears_holds_ = false, is_fresh_text_ = false;  // the first character replaces the text
  Step gesture_;
  Steps steps_;
  double nudged_at_ = -1;
};

}  // namespace channelstrip::window

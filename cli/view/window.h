// A window of the system, its GL context, and frames of the user interface in it. Main thread.
#pragma once

#include "host/picture/image.h"

#include <string>
#include <vector>

struct GLFWwindow;
struct ImDrawList;
struct ImVec2;

namespace cli {

/** Is a key held that has this character on it, without Shift, by the keyboard's layout? */
bool IsTyped(char character);

class Window {
public:
  /** Size in pixels. Throws std::runtime_error with one line where no window can be opened. */
  Window(int width, int height, const std::string& title);
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  bool WantsToClose() const;
  /** The user may be asked first. */
  void KeepOpen();

  /** Waits for input for that many seconds at most, less while input keeps coming, and begins a frame. */
  void BeginFrame(double patience);
  /** Shows the frame; copies it first if asked to. */
  void EndFrame(host::gl::Image* copy = nullptr);

  /** Files dropped onto the window since the last call. */
  std::vector<std::string> TakeDropped();
  struct Key {
    int number =
        0; ///< of the window system; letters, by the keyboard's layout, and digits are their characters
    int place = 0; ///< the number on a keyboard of the United States; negative for unknown keys
    bool control = false, shift = false;
  };
  /** Where there are buttons only: Tab goes to the next one. */
  void SetTabMoves(bool moves) { tabMoves_ = moves; }
  /** Keys pressed since the last call, however short: a press may begin and end between two frames. */
  std::vector<Key> TakeKeys();
  /** How much larger than on an ordinary screen things are drawn. */
  float Scale() const { return scale_; }
  void Size(int* width, int* height) const;
  void SetTitle(const std::string& title);

  /** Leaves the thread's GL to others for a block. */
  class Aside {
  public:
    explicit Aside(const Window& window);
    ~Aside();
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;

  private:
    const Window& window_;
  };

private:
  void SetUpInterface();
  void HoldBriefKeys();
  void ReleaseBriefKeys();
  void PressWithEnter();
  void MoveWithTab();
  static void OnKey(GLFWwindow* window, int key, int code, int action, int modifiers);
  static void OnDrop(GLFWwindow* window, int count, const char** paths);

  GLFWwindow* window_ = nullptr;
  float scale_ = 1.0f;
  std::string title_;
  int lively_ = 3; ///< frames to draw without waiting: the interface settles over a few
  std::vector<std::string> dropped_;
  std::vector<Key> keys_;
  bool enterDown_ = false, enterPresses_ = false;
  bool tabMoves_ = false;
  std::vector<int> brief_; ///< keys that were let go before the frame that shall see them
};

/** A picture that the user interface can show. */
class Texture {
public:
  Texture() {}
  ~Texture();
  Texture(const Texture&) = delete;
  Texture& operator=(const Texture&) = delete;
  /** RGB with 8 bits. */
  void Set(host::gl::Image image);
  bool IsEmpty() const { return name_ == 0 && image_.samples.empty(); }
  /** Within a frame: it uploads what was set since the last one. */
  void* Handle();

private:
  void Upload();

  host::gl::Image image_; ///< not uploaded yet
  unsigned name_ = 0;
};

/** A circle with a dark rim, seen on any ground. */
void DrawRing(ImDrawList& list, const ImVec2& centre, float radius, float scale, unsigned color);

} // namespace cli

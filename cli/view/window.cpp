#include "cli/view/window.h"

// Before GLFW, which would bring another loader's header.
#include <epoxy/gl.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <imgui.h>
#include <imgui_impl_glfw.h>
#include <imgui_impl_opengl3.h>
#include <stdexcept>
#include <utility>

namespace cli {

namespace {

constexpr float kFontPixels = 15.0f;
/** Has the letters of most of Europe; without it the interface draws in a small font of its own. */
constexpr const char* kFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

std::string lastError;

void OnError(int, const char* text) {
  lastError = text;
}

[[noreturn]] void Refuse() {
  throw std::runtime_error("no window can be opened: " + (lastError.empty() ? "no display" : lastError) +
                           " (snapshot and render draw without one)");
}

void LoadFont(float scale) {
  static const ImWchar ranges[] = {0x20,   0x24f,  0x370,  0x3ff,  0x400,  0x4ff, 0x2010,
                                   0x206f, 0x2190, 0x21ff, 0x25a0, 0x25ff, 0};
  ImFontAtlas& fonts = *ImGui::GetIO().Fonts;
  std::error_code ignored;
  if (std::filesystem::exists(kFont, ignored))
    fonts.AddFontFromFileTTF(kFont, kFontPixels * scale, nullptr, ranges);
  if (!fonts.Fonts.empty()) return;
  ImFontConfig plain;
  plain.SizePixels = 13.0f * scale;
  fonts.AddFontDefault(&plain);
}

/** The letter that the keyboard's layout has at a place; other keys, and letters beyond A to Z, stay places.
 */
int LetterOf(int place, int code) {
  const char* name = glfwGetKeyName(place, code);
  if (!name || !name[0] || name[1]) return place;
  const char letter = (char)(name[0] & ~0x20);
  return letter >= 'A' && letter <= 'Z' ? letter : place;
}

} // namespace

Window::Window(int width, int height, const std::string& title) {
  glfwSetErrorCallback(OnError);
  lastError.clear();
  if (!glfwInit()) Refuse();
  glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
  glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 3);
  glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
  window_ = glfwCreateWindow(width, height, title.c_str(), nullptr, nullptr);
  if (!window_) {
    glfwTerminate();
    Refuse();
  }
  glfwMakeContextCurrent(window_);
  glfwSwapInterval(1);
  glfwSetWindowUserPointer(window_, this);
  glfwSetDropCallback(window_, OnDrop);
  glfwSetKeyCallback(window_, OnKey); // the interface calls it before its own
  SetUpInterface();
}

void Window::SetUpInterface() {
  float scaleY = 1.0f;
  glfwGetWindowContentScale(window_, &scale_, &scaleY);
  scale_ = std::clamp(scale_, 1.0f, 4.0f);
  ImGui::CreateContext();
  ImGuiIO& io = ImGui::GetIO();
  io.IniFilename = nullptr; // panes have fixed places
  io.ConfigFlags |= ImGuiConfigFlags_NavEnableKeyboard;
  ImGui::StyleColorsDark();
  ImGuiStyle& style = ImGui::GetStyle();
  style.WindowRounding = 0.0f;
  style.FrameRounding = 3.0f;
  style.Colors[ImGuiCol_WindowBg] = ImVec4(0.13f, 0.14f, 0.16f, 1.0f);
  style.Colors[ImGuiCol_PopupBg] = ImVec4(0.16f, 0.17f, 0.20f, 1.0f);
  // What is selected stands out more than what the pointer happens to rest on.
  style.Colors[ImGuiCol_Header] = ImVec4(0.26f, 0.59f, 0.98f, 0.45f);
  style.Colors[ImGuiCol_HeaderHovered] = ImVec4(0.26f, 0.59f, 0.98f, 0.25f);
  style.Colors[ImGuiCol_HeaderActive] = ImVec4(0.26f, 0.59f, 0.98f, 0.60f);
  // White text is read on it.
  style.Colors[ImGuiCol_PlotHistogram] = ImVec4(0.16f, 0.40f, 0.68f, 1.0f);
  style.Colors[ImGuiCol_TextDisabled] = ImVec4(0.60f, 0.60f, 0.60f, 1.0f);
  style.ScaleAllSizes(scale_);
  LoadFont(scale_);
  ImGui_ImplGlfw_InitForOpenGL(window_, true);
  ImGui_ImplOpenGL3_Init("#version 330");
}

Window::~Window() {
  glfwMakeContextCurrent(window_);
  ImGui_ImplOpenGL3_Shutdown();
  ImGui_ImplGlfw_Shutdown();
  ImGui::DestroyContext();
  glfwDestroyWindow(window_);
  glfwTerminate();
}

bool Window::WantsToClose() const {
  return glfwWindowShouldClose(window_) != 0;
}

void Window::KeepOpen() {
  glfwSetWindowShouldClose(window_, GLFW_FALSE);
}

/** The interface looks at keys once a frame: one that was pressed and let go since the last is held for one.
 */
void Window::HoldBriefKeys() {
  ImGuiIO& io = ImGui::GetIO();
  bool* down = io.KeysDown;
  for (const Key& key : keys_) {
    if (key.control && key.place >= 0 && key.number != key.place)
      down[key.place] = false; // nor is it that letter's shortcut
    if (key.number >= 0 && key.number < IM_ARRAYSIZE(io.KeysDown) && !down[key.number]) {
      down[key.number] = true;
      brief_.push_back(key.number);
      io.KeyCtrl = io.KeyCtrl || key.control;
      io.KeyShift = io.KeyShift || key.shift;
    }
  }
}

void Window::ReleaseBriefKeys() {
  if (brief_.empty()) return;
  ImGuiIO& io = ImGui::GetIO();
  for (const int key : brief_) io.KeysDown[key] = false;
  brief_.clear();
  io.KeyCtrl = io.KeysDown[GLFW_KEY_LEFT_CONTROL] || io.KeysDown[GLFW_KEY_RIGHT_CONTROL];
  io.KeyShift = io.KeysDown[GLFW_KEY_LEFT_SHIFT] || io.KeysDown[GLFW_KEY_RIGHT_SHIFT];
}

/** What the keyboard has chosen is pressed with the space bar by the interface, and with Enter by this. */
void Window::PressWithEnter() {
  ImGuiIO& io = ImGui::GetIO();
  const bool down = io.KeysDown[GLFW_KEY_ENTER] || io.KeysDown[GLFW_KEY_KP_ENTER];
  // The Enter that ends a text stays with the text until it is let go.
  if (down && !enterDown_) enterPresses_ = !io.WantTextInput;
  enterDown_ = down;
  if (down && enterPresses_) io.NavInputs[ImGuiNavInput_Activate] = 1.0f;
}

void Window::MoveWithTab() {
  ImGuiIO& io = ImGui::GetIO();
  if (!tabMoves_ || !io.KeysDown[GLFW_KEY_TAB]) return;
  io.NavInputs[io.KeyShift ? ImGuiNavInput_KeyLeft_ : ImGuiNavInput_KeyRight_] = 1.0f;
}

void Window::BeginFrame(double patience) {
  glfwMakeContextCurrent(window_);
  ReleaseBriefKeys();
  if (lively_ > 0 || patience <= 0.0) {
    glfwPollEvents();
    --lively_;
  } else {
    const double start = glfwGetTime();
    glfwWaitEventsTimeout(patience);
    if (glfwGetTime() - start < patience * 0.95) lively_ = 3;
  }
  HoldBriefKeys();
  ImGui_ImplOpenGL3_NewFrame();
  ImGui_ImplGlfw_NewFrame();
  PressWithEnter();
  MoveWithTab();
  ImGui::NewFrame();
}

void Window::EndFrame(host::gl::Image* copy) {
  ImGui::Render();
  int width = 0, height = 0;
  glfwGetFramebufferSize(window_, &width, &height);
  glViewport(0, 0, width, height);
  glClearColor(0.1f, 0.1f, 0.1f, 1.0f);
  glClear(GL_COLOR_BUFFER_BIT);
  ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
  if (copy) {
    copy->width = width;
    copy->height = height;
    copy->channels = 3;
    std::vector<std::uint8_t> rows((std::size_t)width * height * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, rows.data());
    copy->samples.resize(rows.size());
    const std::size_t row = (std::size_t)width * 3;
    for (int y = 0; y < height; ++y)
      std::memcpy(&copy->samples[(std::size_t)(height - 1 - y) * row], &rows[(std::size_t)y * row], row);
  }
  glfwSwapBuffers(window_);
  // Between frames the host may need the thread for its own context, as when a node of a view dies.
  glfwMakeContextCurrent(nullptr);
}

void Window::OnDrop(GLFWwindow* window, int count, const char** paths) {
  Window& self = *static_cast<Window*>(glfwGetWindowUserPointer(window));
  self.dropped_.insert(self.dropped_.end(), paths, paths + count);
}

void Window::OnKey(GLFWwindow* window, int key, int code, int action, int modifiers) {
  Window& self = *static_cast<Window*>(glfwGetWindowUserPointer(window));
  if (action == GLFW_PRESS)
    self.keys_.push_back(
        {LetterOf(key, code), key, (modifiers & GLFW_MOD_CONTROL) != 0, (modifiers & GLFW_MOD_SHIFT) != 0});
}

std::vector<Window::Key> Window::TakeKeys() {
  return std::exchange(keys_, {});
}

std::vector<std::string> Window::TakeDropped() {
  return std::exchange(dropped_, {});
}

void Window::Size(int* width, int* height) const {
  glfwGetWindowSize(window_, width, height);
}

void Window::SetTitle(const std::string& title) {
  if (std::exchange(title_, title) != title) glfwSetWindowTitle(window_, title.c_str());
}

Window::Aside::Aside(const Window& window) : window_(window) {
  glfwMakeContextCurrent(nullptr);
}
Window::Aside::~Aside() {
  glfwMakeContextCurrent(window_.window_);
}

bool IsTyped(char character) {
  const bool* down = ImGui::GetIO().KeysDown;
  for (int key = GLFW_KEY_SPACE; key <= GLFW_KEY_WORLD_2; ++key) {
    const char* name = down[key] ? glfwGetKeyName(key, 0) : nullptr;
    if (name && name[0] == character && !name[1]) return true;
  }
  return (character == '+' && down[GLFW_KEY_KP_ADD]) || (character == '-' && down[GLFW_KEY_KP_SUBTRACT]);
}

void DrawRing(ImDrawList& list, const ImVec2& centre, float radius, float scale, unsigned color) {
  list.AddCircle(centre, radius, IM_COL32(0, 0, 0, 255), 24, 4.0f * scale);
  list.AddCircle(centre, radius, color, 24, 2.0f * scale);
}

Texture::~Texture() {
  if (name_) glDeleteTextures(1, &name_);
}

void Texture::Set(host::gl::Image image) {
  image_ = std::move(image);
}

void* Texture::Handle() {
  if (!image_.samples.empty()) Upload();
  return (void*)(std::size_t)name_;
}

void Texture::Upload() {
  if (!name_) glGenTextures(1, &name_);
  glBindTexture(GL_TEXTURE_2D, name_);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB8, image_.width, image_.height, 0, GL_RGB, GL_UNSIGNED_BYTE,
               image_.samples.data());
  image_ = host::gl::Image();
}

} // namespace cli

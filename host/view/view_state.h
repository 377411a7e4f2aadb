// What a view keeps while it lives: its GL target, its camera, and the programs and buffers of the objects
// that it drew.
#pragma once

#include "host/gl/framebuffer.h"
#include "host/gl/program_factory.h"
#include "host/gl/vertex_buffer.h"
#include "host/nodes/node_watcher.h"
#include "host/view/camera_math.h"

#include <list>
#include <memory>
#include <string>
#include <vector>

namespace host {

class ViewState;

/** One program factory of the view's cache. The plug-in holds it as GlProgramFactory*. */
struct ViewFactory {
  ViewFactory(ViewState* v, std::vector<gl::VertexAttribute> attributes, std::vector<gl::InputVector> inputs);
  ~ViewFactory();

  ViewState* view;
  const C4DAtom* object = nullptr;
  LULONG index = 0;
  std::string identity; ///< identity bytes and vertex layout
  std::vector<const GlVertexBufferVectorInfo*> vectors;
  gl::ProgramFactory program;
  int locks = 0;
  bool bound = false; ///< to its view
};

/** Vertex data of one object in the view. The plug-in holds it as GlVertexBuffer*. */
struct ViewBuffer {
  explicit ViewBuffer(ViewState* v);
  ~ViewBuffer();

  ViewState* view;
  const C4DAtom* object = nullptr;
  LONG index = 0;
  std::string identity;
  gl::VertexBuffer data;
  bool dirty = true;
};

/** The plug-in holds a view as BaseDraw*. Thread of the view. */
class ViewState : private NodeWatcher {
public:
  ViewState(std::shared_ptr<gl::Context> context, std::unique_ptr<gl::Framebuffer> target);
  ~ViewState() override;

  static ViewState* Of(const BaseDraw* bd) { return (ViewState*)const_cast<BaseDraw*>(bd); }
  BaseDraw* Api() { return (BaseDraw*)this; }
  /** False for pointers to anything but a living view. */
  static bool IsAlive(const ViewState* view);

  /** Drops what a node has in every view. */
  static void RemoveFactories(const C4DAtom* object, LULONG index);
  static void RemoveBuffers(const C4DAtom* object, LONG index);

  std::shared_ptr<gl::Context> context;
  std::unique_ptr<gl::Framebuffer> target;
  ViewFrame frame;
  Matrix objectMatrix;   ///< of what is drawn next, in world space
  LLONG pointsDrawn = 0; ///< vertices of accepted draws since the last Draw began
  LONG drawPortType = DRAWPORT_TYPE_OGL_HQ;
  std::list<std::unique_ptr<ViewFactory>> factories;
  std::list<std::unique_ptr<ViewBuffer>> buffers;

  /** Reports what an object's draw left locked or bound, and lets go of it. */
  void CheckBalance(const String& object);

  void NodeDies(Node& node) override;
};

/** What is drawn for: the plug-in holds it as BaseDrawHelp*. */
struct DrawHelp {
  BaseDocument* document = nullptr;
  Matrix global;
};

/** GL objects alive in all views. */
struct GlCounts {
  LLONG factories = 0, vertexBuffers = 0;
};
GlCounts LiveGlObjects();

} // namespace host

// Builds a shader program line by line, keeps it, and sets its uniforms. Call names are those of the plug-in
// interface.
#pragma once

#include "host/gl/context.h"
#include "host/gl/program_text.h"
#include "host/gl/shader_program.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace host::gl {

/**
 * One program of one layout of vertices. The calls have one order:
 *
 *   AddParameters, Init, AddErrorHandler, AddUniformParameter, AddLine (declarations), GetUniqueID,
 * HeaderFinished, AddLine (statements), CompilePrograms, BindPrograms, SetParameter..., draw, UnbindPrograms
 *
 * A call out of order, with a wrong argument or without the context being current changes nothing and returns
 * false (an empty name, a handle of -1); LastError() then names the call. Thread of its context.
 */
class ProgramFactory {
public:
  /** `attributes` with a location of -1 get a free one. */
  ProgramFactory(std::shared_ptr<Context> context, std::vector<VertexAttribute> attributes,
                 std::vector<InputVector> inputs);
  ~ProgramFactory();
  ProgramFactory(const ProgramFactory&) = delete;
  ProgramFactory& operator=(const ProgramFactory&) = delete;

  /** Adds flags; may be called several times before Init. Flags outside kKnownParameters are refused. */
  bool AddParameters(std::uint64_t parameters);
  /** Starts the text. Subdivision is not available: the count must be 0. */
  bool Init(int subdivisionCount);
  /** Compiler and linker messages of a failed CompilePrograms go to every handler; linker messages as Vertex.
   */
  using ErrorHandler = std::function<void(Stage, const std::string&)>;
  bool AddErrorHandler(ErrorHandler handler);
  /** Declares a uniform and returns its real name, different for each call; empty when refused. */
  std::string AddUniformParameter(Stage stage, UniformType type, const std::string& name);
  /** A declaration before HeaderFinished, a statement of the body after it. */
  bool AddLine(Stage stage, const std::string& line);
  /** A name that nothing else in this program has; empty when refused. */
  std::string GetUniqueID();
  bool HeaderFinished();
  /** After a failure the factory is empty again and takes AddParameters; its text is still there to look at.
   */
  bool CompilePrograms();
  bool IsCompiled() const { return program_ != nullptr; }
  bool IsBound() const { return bound_; }
  /** Drops program and text in any state; a bound program is unbound. */
  bool DestroyPrograms();

  /** Also lets the program decide the size of points. */
  bool BindPrograms();
  /** Allowed after a BindPrograms that failed, as its callers do. */
  bool UnbindPrograms();

  /** Handle of a declared uniform by its real name, also of one that the compiler dropped; -1 when there is
   * none. */
  int GetParameterHandle(Stage stage, const std::string& realName);
  // Each sets a uniform of exactly that type while the program is bound; false for another type. Setting a
  // uniform that the compiler dropped succeeds and does nothing.
  bool SetParameterMatrix(int handle, const float* columns, int dimension);
  bool SetParameterReals(int handle, const float* values, int count);
  bool SetParameterInts(int handle, const int* values, int count);
  bool SetParameterUints(int handle, const unsigned* values, int count);

  const std::vector<VertexAttribute>& Attributes() const { return text_.attributes; }
  std::uint64_t Parameters() const { return text_.parameters; }
  /** Complete text of a stage as far as it was built. */
  std::string GetText(Stage stage) const { return AssembleStage(text_, stage); }
  /** Why the last refused call was refused. */
  const std::string& LastError() const { return lastError_; }

private:
  enum class State { Empty, Parameters, Header, Body, Compiled };
  static const char* Describe(State state);
  bool Refuse(const char* call, const std::string& reason);
  bool Require(const char* call, std::initializer_list<State> states);
  bool RequireCurrent(const char* call);
  bool RequireStage(const char* call, Stage stage);
  /** Whether a uniform can be set; *location is where, -1 when the compiler dropped it. */
  bool FindTarget(const char* call, int handle, UniformType first, int offset, int count, int* location);
  void Restart();
  void ForwardMessage(ShaderProgram::Source source, const std::string& message);

  std::shared_ptr<Context> context_;
  ProgramText text_;
  State state_ = State::Empty;
  unsigned lastId_ = 0;
  std::vector<ErrorHandler> handlers_;
  std::unique_ptr<ShaderProgram> program_;
  std::vector<int> locations_; // by handle: the transform, then the uniforms in order
  bool bound_ = false, bindFailed_ = false;
  std::string lastError_;
};

} // namespace host::gl

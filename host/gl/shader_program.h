// A linked GL program. Internal to program factories.
#pragma once

#include "host/gl/context.h"

#include <functional>
#include <memory>
#include <string>

namespace host::gl {

/** Owns a GL program; its context must be current when it is made, and is made current when it is destroyed.
 */
class ShaderProgram {
public:
  /** Which text the driver complains about: a stage, or the two together. */
  enum class Source { Vertex, Fragment, Link };
  /** Called with each message of a failure, without its last line end. */
  using MessageHandler = std::function<void(Source, const std::string&)>;

  /** NULL after the messages have gone to the handler. */
  static std::unique_ptr<ShaderProgram> Build(std::shared_ptr<Context> context, const std::string& vertexText,
                                              const std::string& fragmentText, const MessageHandler& handler);
  ~ShaderProgram();
  ShaderProgram(const ShaderProgram&) = delete;
  ShaderProgram& operator=(const ShaderProgram&) = delete;

  unsigned Name() const { return name_; }
  /** -1 when the compiler dropped the uniform. */
  int UniformLocation(const std::string& name) const;

private:
  explicit ShaderProgram(std::shared_ptr<Context> context);
  bool AttachStage(unsigned stage, const std::string& text, std::string* log);
  bool Link(std::string* log);

  std::shared_ptr<Context> context_;
  unsigned name_ = 0;
};

} // namespace host::gl

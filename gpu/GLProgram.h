#pragma once
// One linked GLSL ES program with its attribute bindings. Attributes are bound by their index in
// `attributes`, so a filter names them before linking and finds them by name afterwards.

#include "gpu/GLHeaders.h"

#include <juce_core/juce_core.h>

#include <cstdint>
#include <string>
#include <vector>

class GLProgram
{
public:
    /** Compiles both shaders and attaches them; a null or failing text shows up at link(). */
    GLProgram(const juce::String& vertexSource, const juce::String& fragmentSource);
    virtual ~GLProgram();

    GLProgram(const GLProgram&) = delete;
    GLProgram& operator=(const GLProgram&) = delete;

    void addAttribute(const juce::String& name);
    GLuint attributeIndex(const juce::String& name) const;
    GLint uniformIndex(const juce::String& name) const;
    bool link();
    void use();

    juce::String programLog() const;
    juce::String vertexShaderLog() const { return vertexLog; }
    juce::String fragmentShaderLog() const { return fragmentLog; }

    /** The texts as compiled, after the rewriting for a desktop context. */
    static juce::String rewriteForContext(const juce::String& source);

    std::vector<juce::String> attributes;
    std::vector<juce::String> uniforms;
    GLuint program = 0;
    GLuint vertShader = 0;
    GLuint fragShader = 0;
    bool initialized = false;

private:
    bool compileShader(GLuint& shader, GLenum type, const juce::String& source, juce::String& log);

    juce::String vertexLog, fragmentLog;
};

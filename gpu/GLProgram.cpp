#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"

juce::String GLProgram::rewriteForContext(const juce::String& source)
{
    if (!useDesktopGL)
        return source;
    return source.replace("precision highp float;", "")
        .replace("precision highp int;", "")
        .replace("highp ", "")
        .replace("mediump ", "")
        .replace("lowp ", "");
}

GLProgram::GLProgram(const juce::String& vertexSource, const juce::String& fragmentSource)
{
    program = glCreateProgram();
    compileShader(vertShader, GL_VERTEX_SHADER, rewriteForContext(vertexSource), vertexLog);
    compileShader(fragShader, GL_FRAGMENT_SHADER, rewriteForContext(fragmentSource), fragmentLog);
    if (vertShader != 0)
        glAttachShader(program, vertShader);
    if (fragShader != 0)
        glAttachShader(program, fragShader);
}

GLProgram::~GLProgram()
{
    if (vertShader != 0)
        glDeleteShader(vertShader);
    if (fragShader != 0)
        glDeleteShader(fragShader);
    glUseProgram(0);
    if (program != 0)
        glDeleteProgram(program);
}

bool GLProgram::compileShader(GLuint& shader, GLenum type, const juce::String& source, juce::String& log)
{
    if (source.isEmpty())
        return false;

    shader = glCreateShader(type);
    const char* text = source.toRawUTF8();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);

    GLint status = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    if (status != GL_TRUE)
    {
        GLint length = 0;
        glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
        if (length > 0)
        {
            juce::HeapBlock<char> buffer((size_t) length + 1, true);
            glGetShaderInfoLog(shader, length, nullptr, buffer.get());
            log = juce::String(buffer.get());
        }
        DBG("shader compile failed: " << log);
        return false;
    }
    return true;
}

void GLProgram::addAttribute(const juce::String& name)
{
    for (const auto& a : attributes)
        if (a == name)
            return;
    attributes.push_back(name);
    glBindAttribLocation(program, (GLuint) (attributes.size() - 1), name.toRawUTF8());
}

GLuint GLProgram::attributeIndex(const juce::String& name) const
{
    for (size_t i = 0; i < attributes.size(); ++i)
        if (attributes[i] == name)
            return (GLuint) i;
    return ~(GLuint) 0;
}

GLint GLProgram::uniformIndex(const juce::String& name) const
{
    return glGetUniformLocation(program, name.toRawUTF8());
}

bool GLProgram::link()
{
    glLinkProgram(program);
    GLint status = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &status);
    if (status != GL_TRUE)
    {
        DBG("program link failed: " << programLog());
        return false;
    }
    if (vertShader != 0)
        glDeleteShader(vertShader);
    if (fragShader != 0)
        glDeleteShader(fragShader);
    vertShader = fragShader = 0;
    initialized = true;
    return true;
}

void GLProgram::use()
{
    glUseProgram(program);
}

juce::String GLProgram::programLog() const
{
    char buffer[1024] = {};
    glGetProgramInfoLog(program, (GLsizei) sizeof(buffer) - 1, nullptr, buffer);
    return juce::String(buffer);
}

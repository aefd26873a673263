#pragma once

#include <tamber/kernel/tbMemory.h>

class tbCamera;
class tbMatrix;
class tbTraitStack;
class tbWindow;

// The device side of a window: its matrices, its buffers, and the traits in force on it. The drawing plug-in
// completes it and makes it known with setCreateFunc(). Contexts are neither named nor counted; the window owns its
// own. All live contexts stand in one list, which belongs to the application thread.
class TB_API tbRenderContext : public tbMemory
{
public:
    enum MATRIX_MODE : std::int32_t
    {
        MATRIX_MODE_PROJECTION = 0,
        MATRIX_MODE_MODEL = 1,
        MATRIX_MODE_TEXTURE = 2
    };
    enum RENDER_API : std::int32_t
    {
        RENDER_API_NONE = 0,
        RENDER_API_NULL = 1, ///< counts and draws nothing
        RENDER_API_GL = 2
    };
    using CreateFunc = tbRenderContext* (*)(tbWindow*);

    ~tbRenderContext() override;

    /// Replaces the traits in force; takes a reference and drops the old stack's. Null is allowed.
    virtual void setTraitStack(tbTraitStack* stack);
    /// Makes the context on the device; false when the device refuses.
    virtual bool open() = 0;
    /// Ends the frame: the next clear() sets the default traits again.
    virtual void close();
    virtual void beginDraw();
    virtual void endDraw();
    virtual void makeCurrent();
    /// Lets every live object set up what it keeps per context; nothing when automatic set-up is off.
    virtual void initClassInstances();
    virtual bool isFullScreen() const;
    virtual void paint();
    virtual void reOpen();
    /// Sets every visual trait to its default, once a frame however many cameras clear.
    virtual void clear(tbCamera* camera);
    virtual void queryNewPalette();
    virtual void paletteChanged(unsigned int window);
    virtual void disableLight(tbCamera* camera, int light);
    /// Brings the camera's viewport to the device.
    virtual void setViewport(tbCamera* camera) = 0;
    virtual void swapBuffers() = 0;
    virtual void setMatrixMode(MATRIX_MODE mode);
    /// The device's matrix stack of the current mode.
    virtual void loadMatrix(const tbMatrix& matrix) = 0;
    virtual void multMatrix(const tbMatrix& matrix) = 0;
    virtual void pushMatrix() = 0;
    virtual void popMatrix() = 0;
    virtual void loadIdentity() = 0;
    /// Longest edge of a texture in texels.
    virtual int getMaxTextureSize() const = 0;
    /// Clip-space matrices of the rendering frame: the eye looks down -Z, depth maps to [-1, 1]. Bounds lie at the
    /// near distance; equal bounds or distances are the caller's error and give infinities.
    virtual void makeOrthoProjMatrix(tbMatrix& out, float left, float right, float bottom, float top,
                                     float nearDist, float farDist);
    virtual void makePerspProjMatrix(tbMatrix& out, float left, float right, float bottom, float top,
                                     float nearDist, float farDist);
    virtual void setLoadedTextureSize(int size);

    MATRIX_MODE getMatrixMode() const { return matrixMode; }
    tbWindow* getWindow() const { return window; }
    int getLoadedTextureSize() const { return loadedTextureSize; }
    tbTraitStack* getTraitStack() const { return traitStack; }

    static int getNumRenderContexts();
    static tbRenderContext* getRenderContext(int i);
    static RENDER_API getRenderAPI();
    /// What createRenderContext() calls; null when no drawing plug-in is there. A plug-in takes its function back
    /// before it goes.
    static void setCreateFunc(CreateFunc create);
    static CreateFunc getCreateFunc();
    /// A context for `window`, null when no drawing plug-in is there. The caller owns it.
    static tbRenderContext* createRenderContext(tbWindow* window);
    static void enableAutoInit(bool enable);
    static bool isAutoInitEnabled();

protected:
    explicit tbRenderContext(tbWindow* window);
    static void setRenderAPI(RENDER_API api);

private:
    tbRenderContext(const tbRenderContext&) = delete;
    tbRenderContext& operator=(const tbRenderContext&) = delete;

    static RENDER_API renderApi;
    static CreateFunc createFunc;
    static bool autoInit;

    MATRIX_MODE matrixMode = MATRIX_MODE_MODEL;
    tbWindow* window;
    std::int32_t loadedTextureSize = 0;
    bool defaultsApplied = false;
    tbTraitStack* traitStack = nullptr;
};

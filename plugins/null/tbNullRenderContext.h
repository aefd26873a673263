#pragma once

#include <plugins/null/tbNullApi.h>
#include <plugins/null/tbNullCounts.h>
#include <tamber/display/tbRenderContext.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbMatrixStack.h>

// A device that keeps its matrices and counts what it is told. A frame ends with endDraw(): the next clear() sets
// the default traits again.
class TB_NULL_API tbNullRenderContext : public tbRenderContext, public tbNullCounter
{
public:
    explicit tbNullRenderContext(tbWindow* owner);

    bool open() override;
    void endDraw() override;
    void clear(tbCamera* camera) override;
    void setViewport(tbCamera* camera) override;
    void swapBuffers() override;
    void loadMatrix(const tbMatrix& matrix) override;
    void multMatrix(const tbMatrix& matrix) override;
    void pushMatrix() override;
    void popMatrix() override;
    void loadIdentity() override;
    int getMaxTextureSize() const override;

    /// The device's matrix of a mode; the identity for a mode that there is not.
    const tbMatrix& getMatrix(MATRIX_MODE mode) const;
    /// The viewport last set, in pixels.
    void getViewport(int& left, int& right, int& bottom, int& top) const;

    const tbNullCounts& getCounts() const override { return counts; }
    void resetCounts() override { counts = {}; }

    /// Makes this module the drawing plug-in, or gives the kernel back what it does without one.
    static void install();
    static void uninstall();

private:
    static constexpr int NUM_MODES = 3;
    static constexpr int STACK_SIZE = 32;

    tbMatrixStack& stack();

    tbNullCounts counts;
    tbMatrixStack stacks[NUM_MODES] = {tbMatrixStack(STACK_SIZE), tbMatrixStack(STACK_SIZE),
                                       tbMatrixStack(STACK_SIZE)};
    int viewport[4] = {0, 0, 0, 0};
};

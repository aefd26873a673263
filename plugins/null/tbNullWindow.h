#pragma once

#include <plugins/null/tbNullApi.h>
#include <plugins/null/tbNullCounts.h>
#include <tamber/display/tbWindow.h>

class tbNullRenderContext;

// A window with a size and a place and nothing to see. A frame is: beginDraw(), the cameras' draw(), endDraw().
class TB_NULL_API tbNullWindow : public tbWindow, public tbNullCounter
{
    TB_CLASS(tbNullWindow, tbWindow)

public:
    /// 640 x 480 pixels, closed.
    tbNullWindow();
    /// Closed; size and place are copied.
    tbNullWindow(const tbNullWindow& other);
    /// Size and place only.
    tbNullWindow& operator=(const tbNullWindow& other);

    /// Makes the render context and lets every object set itself up for it.
    bool open() override;
    /// Ends the render context.
    void close() override;
    void beginDraw() override;
    /// Ends the frame and shows it.
    void endDraw() override;
    /// Negative sizes count as 0.
    void setSize(int newWidth, int newHeight) override;
    void getSize(int& outWidth, int& outHeight) const override;
    void setXY(int newX, int newY) override;
    void getXY(int& outX, int& outY) const override;
    /// Null while the window is closed.
    tbRenderContext* getRenderContext() const override;

    tbBase* createCopy() const override;
    /// The counts of the render context; zeros while the window is closed.
    const tbNullCounts& getCounts() const override;
    void resetCounts() override;

protected:
    ~tbNullWindow() override;

private:
    int width = 640;
    int height = 480;
    int x = 0;
    int y = 0;
    tbNullRenderContext* renderContext = nullptr;
};

#pragma once

#include <tamber/kernel/tbBase.h>

class tbKeyboard;
class tbMouse;

// What cameras draw into. The drawing plug-in completes it; positions and sizes are in pixels.
class TB_API tbWindow : public tbBase
{
    TB_CLASS(tbWindow, tbBase)

public:
    virtual void enable(bool enabled);
    /// Makes the window on the device; false when the device refuses.
    virtual bool open() = 0;
    virtual void close() = 0;
    virtual void beginDraw();
    virtual void endDraw();
    virtual void setSize(int width, int height) = 0;
    virtual void getSize(int& width, int& height) const = 0;
    virtual void setXY(int x, int y) = 0;
    virtual void getXY(int& x, int& y) const = 0;
    /// Borders and buffer depths are wishes that a plug-in may heed; the kernel keeps none of them and answers
    /// false and 0.
    virtual void enableBorder(bool border);
    virtual bool isBorderEnabled() const;
    virtual void setColorBits(unsigned bits);
    virtual unsigned getColorBits() const;
    virtual void setAlphaBits(unsigned bits);
    virtual unsigned getAlphaBits() const;
    virtual void setDepthBits(unsigned bits);
    virtual unsigned getDepthBits() const;
    virtual void setStencilBits(unsigned bits);
    virtual unsigned getStencilBits() const;
    virtual void setAccumBits(unsigned bits);
    virtual unsigned getAccumBits() const;
    /// The window's queues of input events, null when it has none. The window owns them.
    virtual tbKeyboard* getKeyboard() const;
    virtual tbMouse* getMouse() const;
    /// Null while there is none. The window owns it.
    virtual tbRenderContext* getRenderContext() const = 0;

    bool isEnabled() const { return enabled; }

    /// Width of a pixel over its height, of the whole display.
    static void setPixelAspectRatio(float ratio);
    static float getPixelAspectRatio();

    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

protected:
    tbWindow();
    tbWindow(const tbWindow& other);
    tbWindow& operator=(const tbWindow& other);
    ~tbWindow() override;

private:
    static float pixelAspectRatio;

    bool enabled = true;
};

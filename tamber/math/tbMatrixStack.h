#pragma once

#include <tamber/math/tbMatrix.h>

// A stack of matrices that is never empty. Every accepted change counts up its ID, by which its users tell that the
// top may have changed. What does not fit, and a pop of the last matrix, is ignored silently.
class TB_API tbMatrixStack : public tbAllocated<tbMatrixStack>
{
public:
    enum GROWTH : int
    {
        FIXED = 0,
        UNLIMITED = 1
    };

    /// Room for `size` matrices, all identities at first. Only the low 16 bits of `size` count, on purpose: the
    /// capacity is a word of 16 bits to callers. Room for at least one is made. With UNLIMITED a full stack makes
    /// room instead of ignoring the push, as deep graphs need it.
    explicit tbMatrixStack(int size, GROWTH growth = FIXED);
    tbMatrixStack(const tbMatrixStack& other);
    tbMatrixStack& operator=(const tbMatrixStack& other);
    ~tbMatrixStack();

    /// Back to one matrix, the identity.
    void reset();
    /// Doubles the top. False, as from the other pushes, when there was no room.
    bool push();
    bool pushIdent();
    /// Pushes a copy of `m`, which may be the top itself; so in pushMult() and load().
    bool pushLoad(const tbMatrix& m);
    /// The new top is m times the old top: `m` applies first.
    bool pushMult(const tbMatrix& m);
    void pop();
    void load(const tbMatrix& m);

    // The operation of the same name of tbMatrix on the top.
    void preMult(const tbMatrix& m);
    void postMult(const tbMatrix& m);
    void preTrans(float x, float y, float z);
    void preTrans(const tbVec3& xyz);
    void postTrans(float x, float y, float z);
    void postTrans(const tbVec3& xyz);
    void preRot(float angle, float x, float y, float z);
    void preRot(float angle, const tbVec3& axis);
    void postRot(float angle, float x, float y, float z);
    void postRot(float angle, const tbVec3& axis);
    void preScale(float x, float y, float z);
    void preScale(const tbVec3& xyz);
    void postScale(float x, float y, float z);
    void postScale(const tbVec3& xyz);

    /// Valid until the stack is pushed, popped or assigned to.
    const tbMatrix& getTop() const { return *top; }
    /// Index of the top, 0 at the bottom.
    int getDepth() const { return int(top - matrices); }
    int getStackSize() const { return capacity; }
    /// Counts accepted changes, modulo 65,536.
    std::uint16_t getID() const { return id; }

private:
    /// Moves the top up to a slot whose contents are undefined; false when there is no room.
    bool raise();
    bool makeRoom();
    bool moveTo(int room);
    void copyFrom(const tbMatrixStack& other);
    void release();
    void changed() { ++id; }

    tbMatrix* matrices = &bottom; // on the heap from the first push on
    tbMatrix* top = &bottom;
    tbMatrix* last = &bottom; // of those that there is room for
    tbMatrix bottom;
    std::int32_t capacity;
    std::uint16_t id = 0;
    bool unlimited;
};

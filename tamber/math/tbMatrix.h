#pragma once

#include <tamber/kernel/tbMemory.h>

class tbPlane;
class tbQuat;
class tbVec3;

// A 4x4 transform. Vectors are rows and multiplied on the left: v' = v * m, and a * b applies a first. Elements are
// stored row by row with the translation in row 3. Angles are in degrees; rotations turn counterclockwise about their
// axis by the right-hand rule. Row 1 is the forward direction.
//
// The type word says what the matrix holds, and products and inverses take short cuts by it. It may claim too much,
// never too little: whoever writes elements through getData() or operator[] calls setType() afterwards.
class TB_API tbMatrix : public tbAllocated<tbMatrix>
{
public:
    enum TYPE : unsigned int
    {
        MATRIX_IDENT = 1,    // identity, set only alone
        MATRIX_ROT = 2,      // the upper 3x3 holds more than a scale
        MATRIX_XLATE = 4,    // row 3 holds a translation
        MATRIX_UNISCALE = 8, // rows of the upper 3x3 have equal lengths other than 1
        MATRIX_SCALE = 16,   // rows of the upper 3x3 have unequal lengths
        MATRIX_PROJ = 32     // column 3 is not (0, 0, 0, 1)
    };

    /// Leaves elements and type unset.
    tbMatrix() = default;
    /// Sixteen floats row by row, and a type as in setType().
    tbMatrix(const float* sixteen, unsigned int newType) { set(sixteen, newType); }
    /// The identity as a constant.
    static constexpr tbMatrix identity() { return tbMatrix(Identity()); }

    /// Sixteen floats row by row, and a type as in setType(); so in setRow() and setCol().
    void set(const float* sixteen, unsigned int newType);
    void setRow(int i, float a, float b, float c, float d, unsigned int newType);
    void setCol(int j, float a, float b, float c, float d, unsigned int newType);
    /// 0 finds the type from the elements; anything else is stored as it is.
    void setType(unsigned int newType)
    {
        if (newType != 0)
            type = newType;
        else
            identifyType();
    }
    unsigned int getType() const { return type; }
    /// Finds the type from the elements, with a tolerance of 1e-6.
    void identifyType();

    float* getData() { return elements; }
    const float* getData() const { return elements; }
    /// Row `i`, not range checked.
    float* operator[](int i) { return elements + 4 * i; }
    const float* operator[](int i) const { return elements + 4 * i; }
    void get(float out[4][4]) const;
    void getRow(int i, float& a, float& b, float& c, float& d) const;
    void getCol(int j, float& a, float& b, float& c, float& d) const;

    void makeIdent();
    /// A translation.
    void makeXYZ(float x, float y, float z);
    void makeXYZ(const tbVec3& xyz);
    /// Replaces the translation only.
    void setXYZ(float x, float y, float z);
    void setXYZ(const tbVec3& xyz);
    void getXYZ(float& x, float& y, float& z) const
    {
        x = elements[12];
        y = elements[13];
        z = elements[14];
    }
    void getXYZ(tbVec3& xyz) const;
    void makeScale(float x, float y, float z);
    void makeScale(const tbVec3& xyz);
    /// A rotation about an axis of any length; a zero axis gives elements that are not numbers.
    void makeRot(float angle, float x, float y, float z);
    void makeRot(float angle, const tbVec3& axis);
    /// Roll about Y first, then pitch about X, then heading about Z.
    void makeHPR(float h, float p, float r);
    void makeHPR(const tbVec3& hpr);
    /// Replaces the upper 3x3 and keeps the translation.
    void setHPR(float h, float p, float r);
    void setHPR(const tbVec3& hpr);
    void getHPR(float& h, float& p, float& r) const;
    void getHPR(tbVec3& hpr) const;
    /// Replaces the upper 3x3; of the type only identity and rotation change.
    void setQuat(const tbQuat& q);
    void getQuat(tbQuat& q) const;

    /// Row 1, the image of +Y.
    void getDirection(tbVec3& direction) const;
    /// A rotation whose row 1 is the direction and whose row 2 is as near +Z as can be. A direction straight up or
    /// down keeps +X as the right-hand side; a zero direction gives the identity.
    void makeAlongDirection(const tbVec3& direction);
    /// As above with row 2 near `up`. An up vector that is zero or parallel to the direction leaves the roll open,
    /// and one is chosen.
    void makeAlongDirection(const tbVec3& direction, const tbVec3& up);
    /// Carries points onto a plane along the lines through the point `light`; the result is projective, so points
    /// go through tbVec3::fullXformPt().
    void makeProjection(const tbPlane& plane, const tbVec3& light);
    /// this = m times the reflection in a plane.
    void makeReflection(const tbMatrix& m, const tbPlane& plane);

    /// this = a * b, either of which may be this. The type is the union of both and not found anew, so that it never
    /// claims too little; a product with an identity is a copy of the other operand with its type.
    void mult(const tbMatrix& a, const tbMatrix& b);
    /// this = a * this
    void preMult(const tbMatrix& a) { mult(a, *this); }
    /// this = this * a
    void postMult(const tbMatrix& a) { mult(*this, a); }
    tbMatrix& operator*=(const tbMatrix& a)
    {
        postMult(a);
        return *this;
    }
    tbMatrix operator*(const tbMatrix& a) const
    {
        tbMatrix product;
        product.mult(*this, a);
        return product;
    }

    /// The pre- forms apply the translation, rotation or scale before this transform, the post- forms after it.
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

    /// Element by element; the type is found anew.
    void add(const tbMatrix& a, const tbMatrix& b);
    void sub(const tbMatrix& a, const tbMatrix& b);
    /// All sixteen elements. The type is found anew when it held a translation or a projection.
    void transpose();
    void transpose(const tbMatrix& a);
    /// this = the inverse of `a`, by the short cut of its type. False, with one message and this the identity, when
    /// the general way finds a row of zeros; true otherwise, also for scales by 0, which become infinite.
    bool invert(const tbMatrix& a);

    /// Every element nearer than 1e-6; the type is not compared.
    bool operator==(const tbMatrix& a) const;
    bool operator!=(const tbMatrix& a) const { return !(*this == a); }

    /// A type that the elements contradict is found anew: short cuts by it would be wrong.
    void read(tbEntry* entry);
    void write(tbEntry* entry) const;

private:
    struct Identity
    {
    };
    constexpr explicit tbMatrix(Identity)
        : elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
          type(MATRIX_IDENT)
    {
    }

    void multFull(const tbMatrix& a, const tbMatrix& b);
    void multLinearByLinear(const tbMatrix& a, const tbMatrix& b);
    void multLinearByAffine(const tbMatrix& a, const tbMatrix& b);
    void multLinearByScale(const tbMatrix& a, const tbMatrix& b);
    void multLinearByXlate(const tbMatrix& a, const tbMatrix& b);
    void multAffineByLinear(const tbMatrix& a, const tbMatrix& b);
    void multAffineByAffine(const tbMatrix& a, const tbMatrix& b);
    void multAffineByScale(const tbMatrix& a, const tbMatrix& b);
    void multAffineByXlate(const tbMatrix& a, const tbMatrix& b);
    void multScaleByLinear(const tbMatrix& a, const tbMatrix& b);
    void multScaleByAffine(const tbMatrix& a, const tbMatrix& b);
    void multScaleByScale(const tbMatrix& a, const tbMatrix& b);
    void multXlateByLinear(const tbMatrix& a, const tbMatrix& b);
    void multXlateByAffine(const tbMatrix& a, const tbMatrix& b);
    void multXlateByScale(const tbMatrix& a, const tbMatrix& b);

    void invertRot(const tbMatrix& a, float factor);
    void invertScale(const tbMatrix& a);
    bool invertFull(const tbMatrix& a);
    bool typeHolds() const;

    float elements[16];
    std::uint32_t type;
};

static_assert(sizeof(tbMatrix) == 68 && alignof(tbMatrix) == 4);

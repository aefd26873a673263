#pragma once

class tbFrustum;
class tbMatrix;

// The bounds of a projection, in the camera's frame: extents at the near distance, distances along the view.
struct tbiProjection
{
    enum KIND : int
    {
        PERSPECTIVE,
        ORTHO
    };

    KIND kind = ORTHO;
    float left = -1.0f;
    float right = 1.0f;
    float bottom = -1.0f;
    float top = 1.0f;
    float nearDist = -1.0f;
    float farDist = 1.0f;

    /// The bounds that a clip-space matrix of the rendering frame stands for. A matrix of another form gets bounds
    /// that hold everything.
    static tbiProjection of(const tbMatrix& matrix);

    /// The view volume in the camera's frame.
    void makeFrustum(tbFrustum& frustum) const;
    /// Opening angles in degrees, 0 for a parallel projection.
    void getFOV(float& horizontal, float& vertical) const;
};

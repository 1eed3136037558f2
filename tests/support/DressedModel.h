/// Models with materials, layers and the like, and what must hold of them whatever was done.
#pragma once

#include "support/TestModel.h"

namespace QRV
{
/// The least that counts as an image; `c` tells several apart.
std::vector<char> MakeJPEG(char c);

/// The bitmap store holds just the bitmaps that a state of a texture in some History refers to, each with as many
/// references as there are such states.
void ExpectBitmapsCounted();

/// What DressBox made.
struct Dress
{
    std::uint64_t nBody = INVALID_ID;
    std::uint64_t nTexture = INVALID_ID;
    std::uint64_t nPaint = INVALID_ID;     ///< the material of the faces
    std::uint64_t nWallpaper = INVALID_ID; ///< with a texture, on the body and on the back of face 0
    std::uint64_t nLayer = INVALID_ID;
    std::uint64_t nLevel = INVALID_ID;
    std::uint64_t nKeyed = INVALID_ID;
    std::uint64_t nImage = INVALID_ID;
    std::vector<std::uint64_t> aFaces;
};

/// A box of 2 in a turned frame with a material on all faces, another on the back of one, a textured one on the body,
/// the body on a layer and a level, a named edge and a keyed value on two faces; an image. Each by a call of its own.
Dress DressBox(TestModel& model);

class DressedModel : public TestModel, public Dress
{
public:
    DressedModel() : Dress(DressBox(*this)) {}
};

std::uint64_t MakeMaterial(const TestModel& model, const Color& color, std::uint64_t nTexture = INVALID_ID);
std::uint64_t MakeLayer(const TestModel& model, const std::string& sName, bool bDisplayed = true);
/// INVALID_ID for none.
std::uint64_t GetMaterial(const TestModel& model, std::uint64_t nObject, bool bBack = false);
std::vector<std::uint64_t> GetLayers(const TestModel& model, std::uint64_t nObject);
using LevelPairs = std::vector<std::pair<std::string, double>>;

/// Every object of the ids dies in one step, as if a call had asked for it.
void Delete(std::uint64_t nHistory, const std::vector<std::uint64_t>& aIDs);
void Delete(const TestModel& model, const std::vector<std::uint64_t>& aIDs);

/// Does one thing or another, good or refused, to whatever a History holds.
class RandomUser
{
public:
    explicit RandomUser(std::uint64_t nSeed) : m_random(nSeed) {}

    void Dress(std::uint64_t nHistory);
    /// On a small grid, so that much meets.
    Result Draw(std::uint64_t nHistory);
    std::uint64_t Pick(std::uint64_t nCount) { return m_random() % nCount; }

private:
    /// INVALID_ID if there is none.
    std::uint64_t Any(std::uint64_t nHistory, nObjectType nType);
    void DeleteOne(std::uint64_t nHistory, const IDs& aIDs);
    void DrawOverTheBox(std::uint64_t nHistory);

    std::mt19937_64 m_random;
};
} // namespace QRV

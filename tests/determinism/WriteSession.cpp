// Writes the journal of one long session: drawing in planes of any direction near and far from the origin, arcs and
// circles, boxes, undo and redo, and every other exported call that a replay can repeat. Different builds of the
// library are to make the same model of it.
//   qrv_write_session FILE CALLS

#include "proof/Calls.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace QRV
{
namespace
{
class LongSession
{
public:
    explicit LongSession(std::uint64_t nHistory) : m_nHistory(nHistory)
    {
        for (const CallKind& kind : GetCallKinds())
            if (!kind.aScriptNames.empty() && kind.TakesHistory() && kind.family != tools::nFamily::nHistoryLevel)
                (kind.Changes() ? m_aChanging : m_aAsking).push_back(&kind);
    }

    void Run(std::size_t nCalls)
    {
        while (m_nCalls < nCalls)
        {
            if (Below(12) == 0)
                TurnToAnotherPlace();
            const std::size_t nWhat = Below(100);
            if (nWhat < 45)
                Count(APIConnectPoint3ds(m_nHistory, Place(), Place()));
            else if (nWhat < 55)
                DrawBox();
            else if (nWhat < 62)
                DrawArc();
            else if (nWhat < 68)
                DrawRectangle();
            else if (nWhat < 84)
                Make(*m_aChanging[Below(m_aChanging.size())]);
            else if (nWhat < 92)
                Make(*m_aAsking[Below(m_aAsking.size())]);
            else
                UndoSome();
        }
    }

private:
    std::size_t Below(std::size_t n) { return m_random() % n; }
    double Coordinate(double dSize) { return dSize * static_cast<double>(Below(10001)) / 10000.0; }
    void Count(const Result&) { ++m_nCalls; }

    void TurnToAnotherPlace()
    {
        const Vector3d axis(Coordinate(2) - 1, Coordinate(2) - 1, Coordinate(2) - 0.5);
        m_normal = Below(3) == 0 ? UnitVector3d::kZDir : UnitVector3d(axis, true);
        const UnitVector3d aside = std::abs(m_normal.z) < 0.9 ? UnitVector3d::kZDir : UnitVector3d::kXDir;
        m_across = UnitVector3d(m_normal * aside, true);
        m_along = UnitVector3d(m_normal * m_across, true);
        m_origin = Point3d(Coordinate(400), Coordinate(400), Below(4) == 0 ? 10000.0 : 0.0);
    }

    Point3d At(double dAcross, double dAlong, double dUp) const
    {
        return m_origin + dAcross * Vector3d(m_across) + dAlong * Vector3d(m_along) + dUp * Vector3d(m_normal);
    }
    /// Often a corner of a grid, so that lines meet.
    Point3d Place()
    {
        if (Below(3) == 0)
            return At(Coordinate(6), Coordinate(6), 0);
        return At(static_cast<double>(Below(6)), static_cast<double>(Below(6)), static_cast<double>(Below(8) == 0));
    }

    void DrawBox()
    {
        const double x = Coordinate(5), y = Coordinate(5), dWide = 0.5 + Coordinate(2), dDeep = 0.5 + Coordinate(2);
        const std::array<Point3d, 4> aFoot{At(x, y, 0), At(x + dWide, y, 0), At(x + dWide, y + dDeep, 0),
                                           At(x, y + dDeep, 0)};
        const Vector3d up = (0.5 + Coordinate(3)) * Vector3d(m_normal);
        for (std::size_t i = 0; i < 4; ++i)
        {
            const Point3d &from = aFoot[i], &to = aFoot[(i + 1) % 4];
            Count(APIConnectPoint3ds(m_nHistory, from, to));
            Count(APIConnectPoint3ds(m_nHistory, from, from + up));
            Count(APIConnectPoint3ds(m_nHistory, from + up, to + up));
        }
    }

    void DrawArc()
    {
        std::vector<Point3d> aPoints;
        const double dRadius = 0.3 + Coordinate(2), dTo = Coordinate(6.2);
        Count(APICreateCircleOrArc(m_nHistory, dRadius, Place(), aPoints, m_across, m_along, 0.0, dTo, 0.01, false,
                                   Transf3d(), 3));
    }

    void DrawRectangle()
    {
        std::vector<Point3d> aCorners;
        const double x = Coordinate(5), y = Coordinate(5), dWide = 0.2 + Coordinate(2), dDeep = 0.2 + Coordinate(2);
        Count(APICreateRectangle(m_nHistory, At(x, y, 0), At(x + dWide, y, 0), At(x + dWide, y + dDeep, 0), aCorners,
                                 false));
    }

    void Make(const CallKind& kind)
    {
        ArgumentSource source({m_nHistory, {}}, m_random());
        Count(kind.prepare(source)->Run());
    }

    /// And mostly redoes it.
    void UndoSome()
    {
        const std::size_t nSteps = 1 + Below(4);
        for (std::size_t i = 0; i < nSteps; ++i)
            Count(APIUndoHistory(m_nHistory));
        for (std::size_t i = Below(4) == 0 ? 1 : 0; i < nSteps; ++i)
            Count(APIRedoHistory(m_nHistory));
    }

    std::uint64_t m_nHistory;
    std::size_t m_nCalls = 0;
    std::mt19937_64 m_random{1};
    std::vector<const CallKind*> m_aChanging, m_aAsking;
    Point3d m_origin;
    UnitVector3d m_across = UnitVector3d::kXDir, m_along = UnitVector3d::kYDir, m_normal = UnitVector3d::kZDir;
};

int Write(const std::string& strFile, std::size_t nCalls)
{
    std::uint64_t nHistory = INVALID_ID;
    APICreateHistory(nHistory, true);
    if (!APIEnableJournaling(nHistory, strFile).IsGood())
        return 1;
    APIEnableJournalingTypes({"QRVReadOnly", "QRVJournalPick"}, true);
    LongSession(nHistory).Run(nCalls);
    APIDisableJournaling();
    std::vector<std::uint64_t> aObjects, aFaces;
    APIGetAllObjectsByTypeReadOnly(nHistory, nUnspecifiedType, aObjects);
    APIGetAllObjectsByTypeReadOnly(nHistory, nFaceType, aFaces);
    std::printf("%zu objects, %zu faces\n", aObjects.size(), aFaces.size());
    return 0;
}
} // namespace
} // namespace QRV

int main(int nArguments, char** aArguments)
{
    if (nArguments != 3)
        return std::fputs("qrv_write_session FILE CALLS\n", stderr), 2;
    return QRV::Write(aArguments[1], std::strtoul(aArguments[2], nullptr, 10));
}

/// What the example hosts have in common: one model, drawn with a journal beside it.
#pragma once

#include <QRV/API.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace examples
{
/// Something is not as the example expects; the text says what.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Throws a Failure unless the condition holds.
void Expect(bool bHolds, const std::string& strWhat);
/// Throws a Failure with the library's own message unless the call was good.
void Expect(const QRV::Result& result, const char* pCall);

/// One History and its journal, from construction to destruction. Calls that fail throw a Failure.
class Session
{
public:
    explicit Session(const std::filesystem::path& journal);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    std::uint64_t GetID() const { return m_nID; }

    /// Draws one straight line.
    void Line(const QRV::Point3d& a, const QRV::Point3d& b);
    /// Draws the lines from point to point and back to the first.
    void Outline(const std::vector<QRV::Point3d>& aPoints);
    /// Draws the lines from each point to the one of the same place in the other list.
    void Uprights(const std::vector<QRV::Point3d>& aFrom, const std::vector<QRV::Point3d>& aTo);

    std::vector<std::uint64_t> GetAll(QRV::nObjectType nType) const;
    std::size_t Count(QRV::nObjectType nType) const { return GetAll(nType).size(); }
    double GetArea(std::uint64_t nObject) const;
    double GetVolume(std::uint64_t nObject) const;
    /// How many edges below the body lack a face on one side; none for a closed body.
    std::size_t CountOpenEdges(std::uint64_t nBody) const;
    /// What the audit of the whole model says, a line each.
    std::vector<std::string> Audit() const;

private:
    std::uint64_t m_nID = QRV::INVALID_ID;
};
} // namespace examples

#include "notation/ImageArea.h"

#include "model/Messages.h"
#include "platform/DataFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <utility>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CImageArea, CPageArea);

namespace {
constexpr float kMinimumHeight = 0.2f;

// The largest rectangle of the picture's shape inside `box`, centred across the spare room.
RectF FitPicture(const QSize& picture, const RectF& box)
{
    RectF fitted = box;
    const float ratio = static_cast<float>(picture.width()) / static_cast<float>(picture.height());
    if (ratio > box.Width / box.Height) {
        fitted.Height = box.Width / ratio;
        fitted.Y += (box.Height - fitted.Height) / 2;
    } else {
        fitted.Width = ratio * box.Height;
        fitted.X += (box.Width - fitted.Width) / 2;
    }
    return fitted;
}
} // namespace

CImageArea::CImageArea()
{
    SetMargins(FreeAreaMargin);
    MinimumHeight = kMinimumHeight;
}

CImageArea::CImageArea(const CImageArea& other) : CPageArea(other)
{
    SetMargins(FreeAreaMargin);
    MinimumHeight = kMinimumHeight;
    SetBounds(other.Bounds());
}

QString CImageArea::LibraryFolder()
{
    return DataSubfolder(QStringLiteral("Image Library"));
}

QString CImageArea::CopyToLibrary(const QString& path)
{
    const QFileInfo source(path);
    const QString library = LibraryFolder();
    // Compared as the file system resolves them, so that another spelling of the library folder
    // does not copy a file onto itself.
    if (source.canonicalPath() == QFileInfo(library).canonicalFilePath())
        return path;
    QDir().mkpath(library);
    const QString copy = library + source.fileName();
    QFile::remove(copy);
    // Without a copy the picture stays linked where it is.
    return QFile::copy(path, copy) ? copy : path;
}

void CImageArea::Unlink()
{
    ImageState = NoImage;
    Path.clear();
    m_image = QImage();
}

void CImageArea::LoadImage(bool force)
{
    if (m_loaded && !force)
        return;
    m_loaded = true;
    if (ImageState != Linked)
        return;
    // A score from another machine may name a picture that is not here: it shows an empty area.
    if (!QFileInfo::exists(Path)) {
        Unlink();
        return;
    }
    // Decoded where it stands before anything is copied: a score or clipboard block from
    // elsewhere may name any file at all, and only pictures belong in the library.
    if (!m_image.load(Path)) {
        ShowMessage(QStringLiteral("Error linking to image file: \n") + Path);
        Unlink();
        return;
    }
    Path = CopyToLibrary(Path);
}

void CImageArea::SetImage(const QString& path, QImage* source)
{
    Path = path;
    ImageState = Linked;
    m_loaded = source != nullptr;
    m_image = source != nullptr ? std::exchange(*source, QImage()) : QImage();
    InvalidateSelf();
}

QString CImageArea::GetDescription() const
{
    if (ImageState != Linked)
        return {};
    return Path + QStringLiteral("\nWidth: %1, Height: %2, Depth: %3-bit")
                      .arg(m_image.width())
                      .arg(m_image.height())
                      .arg(m_image.depth());
}

std::unique_ptr<CPageArea> CImageArea::Clone() const
{
    std::unique_ptr<CImageArea> copy(new CImageArea(*this));
    if (ImageState == Linked)
        copy->SetImage(Path, nullptr);
    return copy;
}

void CImageArea::Draw(Painter& painter, OutputMode mode)
{
    CPageArea::Draw(painter, mode);
    LoadImage(false);
    if (ImageState != Linked || m_image.isNull())
        return;
    painter.DrawImage(m_image, FitPicture(m_image.size(), ContentBox()));
}

void CImageArea::AfterBoundsChange(const RectF&)
{
    LoadImage(false);
}

void CImageArea::OnSelectionChanged(bool)
{
    LoadImage(false);
}

} // namespace corrieval

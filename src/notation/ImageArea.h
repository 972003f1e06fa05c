#pragma once

#include "model/PageArea.h"

#include <QImage>
#include <QString>
#include <cstdint>
#include <memory>

namespace corrieval {

// A page area showing a picture. The score keeps only the path; the pictures themselves lie in
// the image library folder, where a picture chosen elsewhere is copied first, so that the scores
// of one machine share them.
class CImageArea : public CPageArea {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum State : std::int32_t { Linked = 0, NoImage = -1 };

    CImageArea();

    // The folder of the image library, ending with "/".
    static QString LibraryFolder();
    // The path of the picture in the library: a file from elsewhere is copied there under its own
    // name, replacing any file of that name. A file already in the library stays where it is.
    static QString CopyToLibrary(const QString& path);

    // Links the picture at Path the first time (or always, with `force`): a missing file unlinks
    // the area silently, a file that cannot be decoded unlinks it with a message.
    void LoadImage(bool force);
    // Links the area to `path`. A picture already decoded from it can be handed over in `source`,
    // which is left empty; without one the file is read at the next paint.
    void SetImage(const QString& path, QImage* source);
    // The path and the picture's size and depth; empty when no picture is linked.
    QString GetDescription() const;
    const QImage& Image() const { return m_image; }

    std::unique_ptr<CPageArea> Clone() const override;
    void Draw(Painter& painter, OutputMode mode) override;
    void AfterBoundsChange(const RectF& oldBounds) override;
    void OnSelectionChanged(bool selected) override;

    QString Path;
    std::int32_t ImageState = NoImage;

protected:
    // The rectangle and the limits of a new area; the picture is linked by Clone.
    CImageArea(const CImageArea& other);

private:
    void Unlink();

    bool m_loaded = false;
    QImage m_image;
};

} // namespace corrieval

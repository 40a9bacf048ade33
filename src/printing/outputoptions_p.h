#pragma once

#include <QFrame>


class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;

namespace PanelKestrin {

// The output options that the print query form and the print options panel both hold, in the
// frame Frame2: where the report goes ("Screen", "Printer", "File": optoutput_0 to _2), the
// page range, the copies with their spinner, the file type, "Printer &Setup..." and, on the
// form only, the file name with its "Save Report As" button. Choosing a destination shows the
// options it takes and sets the frame's height; the owner then sizes itself
// (destinationChosen). The page and copy boxes take digits only, "To Page" Backspace too.
class OutputOptions : public QFrame
{
    Q_OBJECT

public:
    enum Destination { Screen = 0, Printer = 1, File = 2 };
    // Frame heights in twips: with the screen or printer chosen, and with the file option (which
    // depends on whether the file name row is there).
    static constexpr int kCompactHeight = 1110;
    static constexpr int kFileHeightWithName = 2070;
    static constexpr int kFileHeightWithoutName = 1650;

    // withFileName: the form's file name row (Label4, txtfilename, cmdfilehelp). width in twips.
    OutputOptions(bool withFileName, int width, QWidget *parent);
    ~OutputOptions() override;

    int destination() const;
    // As the options first appear: empty page boxes, one copy, "Text File", no file name, the
    // screen layout.
    void clear();
    // The page numbers as 16-bit integers: an empty or non-numeric box raises run-time error 13,
    // a number out of range 6.
    qint16 fromPage() const;
    qint16 toPage() const;
    // The engine's file type for the chosen item: 2 for "Text File", 17 otherwise.
    int printFileType() const;
    int fileTypeIndex() const;
    QString fileName() const;

    QRadioButton *optoutput[3];
    QLabel *Label2;
    QLineEdit *txtfrompage;
    QLabel *Label3;
    QLineEdit *txttopage;
    QLabel *Label1;
    QLineEdit *txtnocopies;
    QScrollBar *UpDown1;
    QLabel *Label5;
    QComboBox *cmbfiletype;
    QLabel *Label4 = nullptr;
    QLineEdit *txtfilename = nullptr;
    QPushButton *cmdfilehelp = nullptr;
    QPushButton *cmdprintsetup;

Q_SIGNALS:
    // optoutput_Click: the layout of Index is shown and Frame2 has its height.
    void destinationChosen(int Index);

private:
    // Back to the screen layout; the boxes keep their texts.
    void resetLayout();
    // Items "Text File" and " Doc File", the first chosen.
    void fillFileTypes();
    void optoutput_Click(int Index);
    void cmdfilehelp_Click();
    void cmdprintsetup_Click();
    void setHeightInTwips(int twips);

    const bool m_withFileName;
    const int m_width;
};

} // namespace PanelKestrin

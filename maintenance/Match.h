#pragma once

#include "devicelink/DeviceAllInfo.h"
#include "ui/Prompt.h"

#include <QTimer>

class QPushButton;
class QTextEdit;

/**
 * The pairing dialog: the user puts a mouse into its pairing state by hand, and this tells the receiver to look for it,
 * watches how that goes, and says so. It takes over the report link while it runs; whoever opens it gives that back
 * (`PairingRun`).
 *
 * While a pairing runs its close button does nothing. Escape is the way out in every state.
 */
class Match : public Prompt
{
    Q_OBJECT
public:
    /** \param receiver what is to be paired; a mouse on its cable can't be */
    explicit Match(const DeviceAllInfo &receiver);
    ~Match() override;

    /** True once the report link was taken over. */
    bool wasStarted() const { return hasStarted; }

public Q_SLOTS:
    void WindowClosedSet();
    void on_CloseButton_clicked() override;
    void done(int result) override;

private Q_SLOTS:
    void on_MatchButton_clicked();
    void onPairTimeupDestroy();
    void onUSBTimeupDestroy();
    void onTextTimeupDestroy();
    void SlotStopTimer();
    void SlotButtonenable(int index);

protected:
    void applyText(const QString &element, const QString &text) override;
    bool event(QEvent *event) override;

private:
    struct StateText;
    static const StateText stateTexts[];

    void buildForm();
    void setStyles();
    void showState();

    const QByteArray PairPath;
    const QByteArray PairVid;
    const QByteArray PairPid;
    const bool PairCorded;
    const int PairCid;
    bool PairAllowed = false;
    bool hasStarted = false;
    int PairTextStep = 0; ///< of the animation, 0 to 4

    QPushButton *MatchButton = nullptr;
    QTextEdit *textEdit = nullptr;
    QTimer UsbTimer;
    QTimer PairTimer;
    QTimer TextTimer;
    QString startText; ///< element `MatchButton`
    QString Matching;
    QString MatchFail;
    QString MatchSuccess;
};

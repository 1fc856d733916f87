#pragma once

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>
#include <QWidget>

/// The form of the main window: its widgets, where they stand and what they say.
///
/// Held by value in the window. Qt's parents own all the objects; the pointers are good as long as the window lives.
/// The object name of each is the name of its field.
class CNorvikClass {
public:
    QWidget* centralWidget = nullptr;
    QWidget* layoutWidget = nullptr;
    QVBoxLayout* verticalLayout_4 = nullptr;
    QVBoxLayout* verticalLayout_2 = nullptr;
    QLabel* label_2 = nullptr;
    QLineEdit* MACEdit = nullptr;
    QVBoxLayout* verticalLayout_3 = nullptr;
    QLabel* label = nullptr;
    QLineEdit* IPEdit = nullptr;
    QHBoxLayout* horizontalLayout_2 = nullptr;
    QPushButton* ChangeButton = nullptr;
    QPushButton* EnumButton = nullptr;
    QWidget* layoutWidget_2 = nullptr;
    QVBoxLayout* verticalLayout = nullptr;
    QHBoxLayout* pobjHLayoutTop = nullptr;
    QWidget* pobjWidget = nullptr;
    QHBoxLayout* horizontalLayout = nullptr;
    QStatusBar* statusBar = nullptr;

    /// Makes all widgets on the window, fills in their texts and connects slots by name.
    void setupUi(QMainWindow* pWindow);

    /// Sets every text of the form in the language in force.
    void retranslateUi(QMainWindow* pWindow);

private:
    void SetupPromptColumn();
    void SetupTreeColumn();
};

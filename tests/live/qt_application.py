"""A window of a Qt application. D opens a modal dialog, H makes the application hang for a while, S
makes it slow from then on."""

import sys
import time

from PyQt6.QtCore import Qt, QTimer
from PyQt6.QtWidgets import QApplication, QDialog, QLabel, QMainWindow, QVBoxLayout

SECONDS_OF_HANGING = 6
SECONDS_OF_SLOWNESS = 3  # between two turns of the event loop, which alone answers


class Window(QMainWindow):
    def __init__(self, title):
        super().__init__()
        self.setWindowTitle(title)
        self.resize(600, 400)

    def keyPressEvent(self, event):
        if event.key() == Qt.Key.Key_D:
            self.open_dialog()
        if event.key() == Qt.Key.Key_H:
            time.sleep(SECONDS_OF_HANGING)
        if event.key() == Qt.Key.Key_S:
            self.be_slow()

    def be_slow(self):
        """Whatever is asked waits for the next turn of the event loop, which is never near."""
        self.timer = QTimer(self)
        self.timer.timeout.connect(lambda: time.sleep(SECONDS_OF_SLOWNESS))
        self.timer.start(0)

    def open_dialog(self):
        dialog = QDialog(self)
        dialog.setWindowTitle("Question")
        dialog.setModal(True)
        QVBoxLayout(dialog).addWidget(QLabel("Really?"))
        dialog.show()


application = QApplication(sys.argv)
window = Window(sys.argv[1])
window.show()
sys.exit(application.exec())

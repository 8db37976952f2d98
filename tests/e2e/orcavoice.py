"""Runs the screen reader Orca with a voice that writes down what it is to say instead of saying it.

    orcavoice.py <record> <folder for settings>

The record gets a line of JSON, a string, for each utterance. Orca's own command would refuse to start
beside an Orca that is already running.
"""

import json
import sys

from orca import orca, settings, speechserver


class SpeechServer(speechserver.SpeechServer):
    @staticmethod
    def getSpeechServers():
        return [SpeechServer()]

    @staticmethod
    def getSpeechServer(info=None):
        return SpeechServer()

    def speak(self, text=None, acss=None, interrupt=True):
        with open(sys.argv[1], "a", encoding="utf-8") as record:
            record.write(json.dumps(text) + "\n")


if __name__ == "__main__":
    settings.speechServerFactory = "orcavoice"
    settings.speechFactoryModules = ["orcavoice"]
    settings.enableKeyEcho = False
    settings.enableBraille = False
    settings.enableSound = False
    orca.getSettingsManager().activate(sys.argv[2])
    sys.exit(orca.main())

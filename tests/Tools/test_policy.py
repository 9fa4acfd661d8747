"""The polkit actions are well-formed, complete in each language, and ask every time."""

import os
import unittest
import xml.etree.ElementTree

LANGUAGE = "{http://www.w3.org/XML/1998/namespace}lang"
VERBS = ("erase-volume", "filter-policy", "flush-names", "install-bundle", "install-drivers", "keep-awake", "mount-ntfs",
         "purge", "reset-index", "secure-erase")
ANNOTATION = "org.freedesktop.policykit.exec."


class PolicyTest(unittest.TestCase):
    def setUp(self):
        root = xml.etree.ElementTree.parse(os.environ["QUILLMERE_POLICY"]).getroot()
        self.assertEqual(root.tag, "policyconfig")
        self.actions = {action.get("id"): action for action in root.findall("action")}

    def test_each_verb_has_its_action(self):
        self.assertEqual(
            {name: self.annotation(action, "argv1") for name, action in self.actions.items()},
            {f"com.veltrane.quillmere.{verb}": verb for verb in VERBS})

    def test_no_two_are_asked_for_in_the_same_words(self):
        for tag in ("description", "message"):
            texts = [entry.text for action in self.actions.values() for entry in action.findall(tag)]
            self.assertEqual(len(set(texts)), 3 * len(VERBS))

    def test_each_is_for_the_installed_program_alone(self):
        for action in self.actions.values():
            self.assertEqual(self.annotation(action, "path"), "/usr/libexec/quillmere/quillmere-admin")
            self.assertIsNone(self.annotation(action, "allow_gui"))

    def test_each_asks_for_an_administrators_password_every_time(self):
        for action in self.actions.values():
            answers = {entry.tag: entry.text for entry in action.find("defaults")}
            self.assertEqual(answers, dict.fromkeys(("allow_any", "allow_inactive", "allow_active"), "auth_admin"))

    def test_each_speaks_three_languages(self):
        for action in self.actions.values():
            for tag in ("description", "message"):
                texts = {entry.get(LANGUAGE): entry.text for entry in action.findall(tag)}
                self.assertEqual(set(texts), {None, "es", "ru"})
                self.assertEqual(len(set(texts.values())), 3)

    @staticmethod
    def annotation(action, key):
        values = [entry.text for entry in action.findall("annotate") if entry.get("key") == ANNOTATION + key]
        return values[0] if values else None


if __name__ == "__main__":
    unittest.main()

#ifndef TELEMETRIX_BRIDGE_H
#define TELEMETRIX_BRIDGE_H

/*
 * Telemetrix for programs that are not written in C++, such as game engines.
 *
 * All texts are UTF-8 and end with a zero byte; they are copied before the call returns. Data is the
 * text of a JSON object. The library must have been installed by the program's C++ part; without that,
 * and before telemetrix_start_session(), nothing is recorded. A null name, and data that is no JSON
 * object, drop the event with a warning in the log; null data means none. No call fails, throws or waits
 * for the disk. Main thread.
 */

#ifdef __cplusplus
extern "C" {
#endif

/* Starts recording under the application id of the program's bundle. */
void telemetrix_start_session(void);

/* A custom event; its name is the text under "custom_event_name", which is not part of what is sent. */
void telemetrix_custom_event(const char* json);

/* An event of the name "custom", with data or without. */
void telemetrix_log_event(void);
void telemetrix_log_event_with_data(const char* json);

/* Beginning and end of a timed event of the name "custom_timed". */
void telemetrix_log_timed_event(void);
void telemetrix_log_timed_event_with_data(const char* json);
void telemetrix_end_timed_event(void);

/*
 * What happens in a game. Each is stored, without data, under its own word and the texts given, joined by
 * full stops: "scene_start.<scene_id>.<name>", "button_click.<name>", "level_start.<name>.<mode>",
 * "loot_append.<name>.<volume>", "loot_consume.<name>.<volume>.<target>", "game_over.<mode>".
 */
void telemetrix_scene_start(const char* scene_id, const char* name);
void telemetrix_button_click(const char* name);
void telemetrix_level_start(const char* name, const char* mode);
void telemetrix_level_win(const char* name, const char* mode);
void telemetrix_level_lose(const char* name, const char* mode);
void telemetrix_loot_append(const char* name, const char* volume);
void telemetrix_loot_consume(const char* name, const char* volume, const char* target);
void telemetrix_game_over(const char* mode);

#ifdef __cplusplus
}
#endif

#endif

-- Homes whose tree has a cycle, or whose files disagree about it
--
-- By the rules of `algdata audit`, the homes with most of it first.
--
-- day         home         cycles  unknownFathers  disagreements  wrongRanks
-- 2026-11-20  home0000011       1               0              1           0
-- 2026-11-20  home0000031       1               0              1           0
-- 2026-11-20  home0000051       1               0              1           0
-- 2026-11-20  home0000071       1               0              1           0
SELECT
    day,
    home,
    sum(CASE WHEN rule = 'father-cycle' THEN 1 ELSE 0 END) AS cycles,
    sum(CASE WHEN rule = 'unknown-father' THEN 1 ELSE 0 END) AS unknownFathers,
    sum(CASE WHEN rule IN ('father-differs', 'rank-differs') THEN 1 ELSE 0 END) AS disagreements,
    sum(CASE WHEN rule = 'rank-step' THEN 1 ELSE 0 END) AS wrongRanks
FROM audit
WHERE rule IN ('father-cycle', 'unknown-father', 'father-differs', 'rank-differs', 'rank-step')
GROUP BY day, home
ORDER BY cycles DESC, unknownFathers DESC, disagreements DESC, wrongRanks DESC, day, home
